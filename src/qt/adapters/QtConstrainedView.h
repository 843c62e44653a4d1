#pragma once

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

#include "qt/adapters/QtView.h"
#include "toolkit/LayoutConstraint.h"

namespace corvane::qt {

/// Holds a widget to one width or height while a view has it among its constraints. Animations take as long
/// as the widget's style has them take.
class QtLayoutConstraint final : public toolkit::LayoutConstraint {
public:
    /// `item` is the view on `widget`.
    QtLayoutConstraint(const toolkit::View& item, QWidget& widget, toolkit::LayoutAttribute attribute,
                       double constant);
    ~QtLayoutConstraint() override;
    QtLayoutConstraint(const QtLayoutConstraint&) = delete;
    QtLayoutConstraint& operator=(const QtLayoutConstraint&) = delete;

    [[nodiscard]] const toolkit::View* firstItem() const override { return widget_ ? &item_ : nullptr; }
    [[nodiscard]] toolkit::LayoutAttribute firstAttribute() const override { return attribute_; }
    [[nodiscard]] double constant() const override { return constant_; }
    void setConstant(double constant) override;
    [[nodiscard]] Animator& animator() override { return animator_; }

    /// Takes hold of the widget, or lets it go with the limits that it had before.
    void setActive(bool active);

private:
    struct Animation final : Animator {
        explicit Animation(QtLayoutConstraint& constraint) : owner(constraint) {}
        void setConstant(double constant) override { owner.animateTo(constant); }
        QtLayoutConstraint& owner;
    };
    struct Limits {
        int least = 0;
        int most = QWIDGETSIZE_MAX;
    };
    void animateTo(double constant);
    void hold(double length);
    void setLimits(Limits limits);
    [[nodiscard]] Limits limits() const;
    [[nodiscard]] int lengthNow() const;

    const toolkit::View& item_;
    QPointer<QWidget> widget_;
    toolkit::LayoutAttribute attribute_;
    double constant_;
    bool active_ = false;
    Limits before_;
    QVariantAnimation animation_;
    Animation animator_{*this};
};

/// A widget with constraints of its own.
class QtConstrainedView final : public QtView<toolkit::ConstrainedView, QWidget> {
public:
    using QtView::QtView;
    ~QtConstrainedView() override;

    [[nodiscard]] std::vector<Constraint> constraints() const override { return held_; }
    /// `constraint` is one of this toolkit's.
    void addConstraint(Constraint constraint) override;
    void removeConstraint(const toolkit::LayoutConstraint& constraint) override;
    [[nodiscard]] std::vector<Constraint>
    constraintsWithVisualFormat(std::string_view format,
                                const std::map<std::string, toolkit::View*>& views) override;

private:
    std::vector<Constraint> held_;
};

} // namespace corvane::qt
