#include "qt/widgets/GrowingArea.h"

#include <QLayout>
#include <QScreen>
#include <algorithm>

#include "qt/look/ScreenFit.h"

namespace corvane::qt {
namespace {

constexpr int lowest = 120;
/// For the title bar, whose height isn't known before the window is shown.
constexpr int roomForTitle = 40;

} // namespace

GrowingArea::GrowingArea(QWidget* content, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus); // the fields in it have the keyboard
    setWidget(content);
    content->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

QSize GrowingArea::sizeHint() const {
    const auto* layout = widget()->layout();
    const auto wanted = layout->totalSizeHint();
    const int height =
        layout->hasHeightForWidth() ? layout->totalHeightForWidth(std::max(width(), 1)) : wanted.height();
    return {wanted.width(), height};
}

QSize GrowingArea::minimumSizeHint() const {
    return {widget()->minimumSizeHint().width(), std::min(lowest, sizeHint().height())};
}

void fitHeight(QDialog& dialog, GrowingArea& area, bool mayShrink) {
    area.widget()->layout()->activate();
    area.updateGeometry();
    dialog.layout()->activate();
    const int wanted = dialog.layout()->totalHeightForWidth(dialog.width());
    const int least = mayShrink ? 0 : dialog.height();
    dialog.resize(dialog.width(), std::min(std::max(wanted, least), heightOnScreen(dialog)));
}

int heightOnScreen(const QWidget& window) {
    return fitsScreen() ? window.screen()->availableGeometry().height() - roomForTitle : QWIDGETSIZE_MAX;
}

} // namespace corvane::qt
