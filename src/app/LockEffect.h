#pragma once

#include "app/MainWindowOutlets.h"

namespace corvane::app {

/// What opening and closing the lock does to the window's controls. Main thread.
class LockEffect {
public:
    struct Needs {
        virtual ~Needs() = default;
        virtual void updateConfigEnable() = 0;
        virtual void updateDeleteEnable() = 0;
        virtual void updateDeleteContactEnable() = 0;
        virtual void updateModifiedState() = 0;
        [[nodiscard]] virtual std::string selectedTabItemIdentifier() = 0;
    };

    LockEffect(const MainWindowOutlets& outlets, Needs& needs) : outlets_(outlets), needs_(needs) {}

    /// Tables are redrawn in either case. Closing disables what changes anything, Apply included, and takes
    /// every selection away; opening enables it and selects the first connector.
    void lockStateChanged(bool unlocked);

private:
    void lock();
    void unlock();

    MainWindowOutlets outlets_;
    Needs& needs_;
};

} // namespace corvane::app
