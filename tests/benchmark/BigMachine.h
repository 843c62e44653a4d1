#pragma once

#include <QAbstractItemView>
#include <memory>
#include <string>
#include <vector>

#include "desktop/Program.h"
#include "gui/steps/WindowUser.h"
#include "haldend/TestMachine.h"

namespace corvane::bench {

/// The real window, unlocked, with the authentication policy in front in Custom mode, on a machine whose
/// directory service knows `count` nodes more than the two local ones.
class BigMachine {
public:
    explicit BigMachine(std::size_t count);
    ~BigMachine();
    BigMachine(const BigMachine&) = delete;
    BigMachine& operator=(const BigMachine&) = delete;

    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    [[nodiscard]] app::MainController& controller() { return program_->controller(); }
    [[nodiscard]] gui::WindowUser& user() { return *user_; }
    [[nodiscard]] QWidget& shell() const;

    void openPanel() { controller().addNodeAction(); }
    void closePanel();
    /// Throws when the panel doesn't show so many rows: a measurement of something else is worth nothing.
    void requireRows(int count) const;
    [[nodiscard]] int rowsOfPanel() const;
    [[nodiscard]] QAbstractItemView& panelTable() const;
    [[nodiscard]] int nodesOnPolicy() const;

private:
    std::vector<std::string> names_;
    haldend::test::TestMachine machine_;
    std::unique_ptr<desktop::Program> program_;
    std::unique_ptr<gui::WindowUser> user_;
};

} // namespace corvane::bench
