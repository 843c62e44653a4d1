#pragma once

#include <QWidget>

#include "views/SettingsBackgroundView.h"

namespace corvane::qt {

/// A ground with a thin border, a little lighter than what it lies on.
class BackgroundPanel final : public QWidget {
public:
    explicit BackgroundPanel(QWidget* parent = nullptr) : QWidget(parent) {}

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    views::SettingsBackgroundView view_;
};

} // namespace corvane::qt
