#pragma once

#include <QLineEdit>
#include <QPointer>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

class QLabel;

namespace corvane::qt {

/// Judges what is typed, pasted or dropped into a line of text, and what the text is worth when the edit
/// ends. A refused edit leaves text, cursor and selection as they were. A text that is refused at the end of
/// the edit stays to be repaired, and the reason is shown beside the field until the text is acceptable
/// again.
///
/// Stands on Qt alone, so that any window can use it. Main thread. Texts are UTF-8, ranges count code points.
class FieldFormatting final : public QObject {
public:
    struct Range {
        std::size_t location = 0;
        std::size_t length = 0;
    };
    struct Edit {
        std::string proposed; ///< may be changed by a refusal to what shall be taken instead
        Range proposedSelection;
        std::string original;
        Range originalSelection;
    };
    struct Commit {
        bool accepted = true;
        std::string text;        ///< accepted: what the field shows for the value
        std::string description; ///< refused: why, for the user; may be empty
    };
    struct Rules {
        std::function<bool(Edit& edit)> mayBecome;
        std::function<Commit(const std::string& text)> commit;
    };

    /// The field's text is its first value. The field may go before this object does.
    FieldFormatting(QLineEdit& field, Rules rules);
    ~FieldFormatting() override;
    FieldFormatting(const FieldFormatting&) = delete;
    FieldFormatting& operator=(const FieldFormatting&) = delete;

    /// Sets text and value without asking.
    void setText(const QString& text);
    /// Ends the edit, as the return key and leaving the field do: whether the text is acceptable. What was
    /// judged already isn't judged again.
    bool commit();
    /// What was accepted last.
    [[nodiscard]] const QString& value() const { return value_; }
    /// The reason that is shown, "" when none is.
    [[nodiscard]] QString shownDescription() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Gate;
    [[nodiscard]] bool mayBecome(QString& text, int& cursor) const;
    void put(const QString& text);
    void textChanged(const QString& text);
    void noteSelection();
    void show(const QString& description);
    void hide();
    void placeLabel();

    QPointer<QLineEdit> field_;
    const QObject* watched_; ///< the same, to be compared and not used
    Rules rules_;
    std::unique_ptr<Gate> gate_;
    QString text_;   ///< what the field shows
    QString value_;  ///< accepted last
    QString judged_; ///< the text that the last commit was about
    bool refused_ = false;
    bool byProgram_ = false;
    Range selection_;
    QPointer<QLabel> label_;
    QString accessibleDescription_; ///< the field's own
};

} // namespace corvane::qt
