#include "qt/look/CorvaneStyle.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPainter>
#include <QPushButton>
#include <QStyleOption>
#include <QTime>
#include <QToolBar>

#include "qt/look/Appearance.h"

namespace corvane::qt {

namespace {

constexpr double radius = 6;
/// From the edge of a list to the text of its cells and headings.
constexpr int cellInset = 8;

QColor mixed(const QColor& a, const QColor& b, double part) {
    const auto channel = [part](int x, int y) { return int(x + (y - x) * part); };
    return {channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue())};
}

/// A face's colour under the mouse, pressed, or at rest.
QColor faceColor(const QStyleOption& option, const QColor& atRest) {
    const auto text = option.palette.color(QPalette::WindowText);
    if (!(option.state & QStyle::State_Enabled))
        return mixed(atRest, option.palette.color(QPalette::Window), 0.7);
    if (option.state & (QStyle::State_Sunken | QStyle::State_On)) return mixed(atRest, text, 0.14);
    return option.state & QStyle::State_MouseOver ? mixed(atRest, text, 0.05) : atRest;
}

void drawRound(QPainter& painter, const QRectF& place, const QColor& fill, const QColor& line,
               double corner) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill);
    painter.setPen(line.isValid() ? QPen(line, 1) : QPen(Qt::NoPen));
    painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    painter.restore();
}

/// A line that parts what belongs together; no border of anything that can be operated.
QColor separator(const QPalette& palette) {
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.22);
}

/// The border of a field, with or without the keyboard.
QColor border(const QPalette& palette, bool focus) {
    return strengthened(palette.color(focus ? QPalette::Highlight : QPalette::Mid),
                        {palette.color(QPalette::Window), palette.color(QPalette::Base)}, visibleBorder);
}

void drawFocusRing(QPainter& painter, const QRectF& place, const QPalette& palette, double corner) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette.color(QPalette::Highlight), 2));
    painter.drawRoundedRect(place.adjusted(1, 1, -1, -1), corner, corner);
    painter.restore();
}

bool showsFocus(const QStyleOption& option) {
    return (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange);
}

void drawPushButtonFace(const QStyleOption& option, QPainter& painter) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    const bool isDefault = button && (button->features & QStyleOptionButton::DefaultButton);
    const bool accented = isDefault && (option.state & QStyle::State_Enabled);
    const auto role = accented ? QPalette::Highlight : QPalette::Button;
    const auto fill = faceColor(option, option.palette.color(role));
    const auto line = accented ? mixed(fill, Qt::black, 0.15) : option.palette.color(QPalette::Mid);
    drawRound(painter, option.rect, fill, line, radius);
    if (!showsFocus(option)) return;
    // On a face of the accent's colour the ring has to be of another.
    auto ring = option.palette;
    if (accented) ring.setColor(QPalette::Highlight, ring.color(QPalette::HighlightedText));
    drawFocusRing(painter, accented ? QRectF(option.rect).adjusted(2, 2, -2, -2) : QRectF(option.rect), ring,
                  accented ? radius - 2 : radius);
}

/// With a frame at rest unless the button says that it raises itself under the mouse alone. A button that is
/// as wide as high and has the property "round" is a disc.
void drawToolButtonFace(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
    if (!(option.state & QStyle::State_AutoRaise)) {
        const bool disc = widget && widget->property("round").toBool();
        const double corner = disc ? option.rect.height() / 2.0 : radius;
        drawRound(painter, option.rect, faceColor(option, option.palette.color(QPalette::Button)),
                  option.palette.color(QPalette::Mid), corner);
        if (showsFocus(option)) drawFocusRing(painter, option.rect, option.palette, corner);
        return;
    }
    const auto active = QStyle::State_MouseOver | QStyle::State_Sunken | QStyle::State_On;
    if (option.state & active) {
        auto fill = option.palette.color(QPalette::WindowText);
        fill.setAlphaF(option.state & (QStyle::State_On | QStyle::State_Sunken) ? 0.10F : 0.05F);
        drawRound(painter, option.rect, fill, {}, radius);
    }
    if (showsFocus(option)) drawFocusRing(painter, option.rect, option.palette, radius);
}

void drawChevrons(QPainter& painter, const QRectF& place, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const auto middle = place.center();
    for (const int way : {-1, 1}) {
        const QPointF tip = middle + QPointF(0, way * 5.5);
        const QPointF wing(3.2, -way * 3.2);
        painter.drawPolyline(QList<QPointF>{tip + QPointF(-wing.x(), wing.y()), tip, tip + wing});
    }
    painter.restore();
}

void drawComboBox(const QStyleOptionComboBox& option, QPainter& painter) {
    const auto fill = faceColor(option, option.palette.color(QPalette::Button));
    drawRound(painter, option.rect, fill, option.palette.color(QPalette::Mid), radius);
    const QRectF arrow(option.rect.right() - 24, option.rect.top(), 20, option.rect.height());
    drawChevrons(painter, arrow, option.palette.color(QPalette::ButtonText));
    if (showsFocus(option)) drawFocusRing(painter, option.rect, option.palette, radius);
}

/// With an outline that is seen on any ground, and of the accent's colour when it is checked.
void drawCheckBox(const QStyleOption& option, QPainter& painter) {
    const bool checked = option.state & QStyle::State_On;
    const bool accented = checked && (option.state & QStyle::State_Enabled);
    const auto fill = option.palette.color(accented ? QPalette::Highlight : QPalette::Button);
    drawRound(painter, option.rect, fill, accented ? fill : option.palette.color(QPalette::Mid), 4);
    if (!checked) return;
    const QRectF box(option.rect);
    const auto at = [&box](double x, double y) {
        return box.topLeft() + QPointF(x * box.width(), y * box.height());
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const auto role = accented ? QPalette::HighlightedText : QPalette::ButtonText;
    painter.setPen(QPen(option.palette.color(role), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QList<QPointF>{at(0.26, 0.53), at(0.43, 0.70), at(0.75, 0.32)});
    painter.restore();
}

void drawProgress(const QStyleOptionProgressBar& option, QPainter& painter) {
    constexpr double thickness = 6;
    QRectF groove(option.rect);
    groove.setTop(groove.center().y() - thickness / 2);
    groove.setHeight(thickness);
    auto ground = option.palette.color(QPalette::WindowText);
    ground.setAlphaF(0.14F);
    drawRound(painter, groove, ground, {}, thickness / 2);
    const bool busy = option.maximum <= option.minimum;
    QRectF done = groove;
    if (busy) {
        // A third of the bar that goes to and fro; Qt has the bar drawn anew for each step.
        const double phase = double(QTime::currentTime().msecsSinceStartOfDay() % 1600) / 1600;
        const double along = phase < 0.5 ? phase * 2 : 2 - phase * 2;
        done.setWidth(groove.width() / 3);
        done.moveLeft(groove.left() + along * groove.width() * 2 / 3);
    } else {
        const double part = double(option.progress - option.minimum) / (option.maximum - option.minimum);
        if (part <= 0) return;
        done.setWidth(std::max(thickness, groove.width() * part));
    }
    drawRound(painter, done, option.palette.color(QPalette::Highlight), {}, thickness / 2);
}

QRect lowerEdge(const QRect& place) { return {place.left(), place.bottom(), place.width(), 1}; }

void drawMenuBarItem(const QStyleOptionMenuItem& option, QPainter& painter) {
    const bool chosen = (option.state & QStyle::State_Selected) && (option.state & QStyle::State_Enabled);
    painter.fillRect(option.rect, option.palette.color(QPalette::Window));
    if (chosen) {
        auto fill = option.palette.color(QPalette::WindowText);
        fill.setAlphaF(0.10F);
        drawRound(painter, QRectF(option.rect).adjusted(1, 2, -1, -2), fill, {}, 4);
    }
    painter.setPen(option.palette.color(QPalette::WindowText));
    painter.drawText(option.rect, Qt::AlignCenter | Qt::TextShowMnemonic, option.text);
}

/// Tabs as the parts of one long button.
void drawSegment(const QStyleOptionTab& option, QPainter& painter) {
    const bool first =
        option.position == QStyleOptionTab::Beginning || option.position == QStyleOptionTab::OnlyOneTab;
    const bool last =
        option.position == QStyleOptionTab::End || option.position == QStyleOptionTab::OnlyOneTab;
    const bool chosen = option.state & QStyle::State_Selected;
    const auto& palette = option.palette;
    const bool enabled = option.state & QStyle::State_Enabled;
    const auto accent = palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Highlight);
    const QRectF place(option.rect);
    painter.save();
    painter.setClipRect(place);
    // Rounds at the outer ends only: the inner ones lie outside what is drawn.
    const auto face = place.adjusted(first ? 0 : -2 * radius, 0, last ? 0 : 2 * radius, 0);
    QStyleOption still(option);
    still.state &= ~(QStyle::State_On | QStyle::State_Sunken);
    const auto fill = chosen ? accent : faceColor(still, palette.color(QPalette::Button));
    drawRound(painter, face, fill, chosen ? accent : palette.color(QPalette::Mid), radius);
    if (!last && !chosen)
        painter.fillRect(QRectF(place.right() - 1, place.top() + 1, 1, place.height() - 2),
                         palette.color(QPalette::Mid));
    painter.restore();
}

} // namespace

CorvaneStyle::CorvaneStyle() : QProxyStyle("Fusion") {}

void CorvaneStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QComboBox*>(widget) || qobject_cast<QAbstractButton*>(widget))
        widget->setAttribute(Qt::WA_Hover);
}

void CorvaneStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    switch (element) {
    case PE_PanelButtonCommand:
        return drawPushButtonFace(*option, *painter);
    case PE_PanelButtonTool:
        return drawToolButtonFace(*option, *painter, widget);
    case PE_PanelLineEdit:
        if (const auto* panel = qstyleoption_cast<const QStyleOptionFrame*>(option);
            panel && panel->lineWidth > 0) {
            const auto line = border(option->palette, option->state & State_HasFocus);
            // A field that can't be typed into has no ground of its own.
            const auto ground = option->state & State_Enabled ? QPalette::Base : QPalette::Window;
            return drawRound(*painter, option->rect, option->palette.color(ground), line, radius);
        }
        break;
    case PE_IndicatorCheckBox:
        return drawCheckBox(*option, *painter);
    case PE_PanelMenuBar:
    case PE_FrameDefaultButton:
        return;
    case PE_FrameFocusRect:
        // Buttons and boxes draw their ring with their face, and a list marks its rows by the selection.
        return;
    case PE_Frame: {
        drawRound(*painter, option->rect, Qt::transparent,
                  border(option->palette, option->state & State_HasFocus), 2);
        return;
    }
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void CorvaneStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option)) {
        if (element == CE_ProgressBarGroove || element == CE_ProgressBarLabel) return;
        if (element == CE_ProgressBarContents) return drawProgress(*bar, *painter);
    }
    if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
        if (element == CE_TabBarTabShape) return drawSegment(*tab, *painter);
        if (element == CE_TabBarTabLabel) {
            QStyleOptionTab label(*tab);
            const bool chosen = tab->state & State_Selected;
            if (chosen)
                label.palette.setColor(QPalette::WindowText, tab->palette.color(QPalette::HighlightedText));
            if (showsFocus(*tab))
                drawFocusRing(*painter, QRectF(tab->rect).adjusted(3, 3, -3, -3), label.palette, 3);
            label.state &= ~State_HasFocus;
            painter->save();
            painter->setPen(label.palette.color(QPalette::WindowText));
            painter->drawText(tab->rect, Qt::AlignCenter | Qt::TextShowMnemonic, tab->text);
            painter->restore();
            return;
        }
    }
    if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
        frame && element == CE_ShapedFrame && frame->frameShape == QFrame::HLine)
        return painter->fillRect(lowerEdge(option->rect), separator(option->palette));
    if (element == CE_MenuBarEmptyArea)
        return painter->fillRect(option->rect, option->palette.color(QPalette::Window));
    if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        item && element == CE_MenuBarItem)
        return drawMenuBarItem(*item, *painter);
    if (element == CE_ToolBar) {
        painter->fillRect(option->rect, option->palette.color(QPalette::Window));
        return painter->fillRect(lowerEdge(option->rect), separator(option->palette));
    }
    if (element == CE_HeaderSection || element == CE_HeaderEmptyArea) {
        painter->fillRect(option->rect, option->palette.color(QPalette::AlternateBase));
        painter->fillRect(lowerEdge(option->rect), separator(option->palette));
        return;
    }
    if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
        header && element == CE_HeaderLabel) {
        painter->setPen(option->palette.color(QPalette::PlaceholderText));
        painter->drawText(option->rect.adjusted(cellInset - 1, 0, -cellInset, 0), int(header->textAlignment),
                          header->text);
        return;
    }
    if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        button && element == CE_PushButtonLabel) {
        QStyleOptionButton label(*button);
        const bool accented =
            (button->features & QStyleOptionButton::DefaultButton) && (button->state & State_Enabled);
        if (accented)
            label.palette.setColor(QPalette::ButtonText, label.palette.color(QPalette::HighlightedText));
        return QProxyStyle::drawControl(element, &label, painter, widget);
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void CorvaneStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
    const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (control == CC_ComboBox && box && !box->editable) return drawComboBox(*box, *painter);
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    // A button without a face at rest gets none drawn for the keyboard's sake: its ring is drawn here.
    if (control == CC_ToolButton && (option->state & State_AutoRaise) && showsFocus(*option))
        drawFocusRing(*painter, option->rect, option->palette, radius);
}

QRect CorvaneStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                   const QWidget* widget) const {
    const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (box && !box->editable && part == SC_ComboBoxEditField) return box->rect.adjusted(10, 2, -28, -2);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

int CorvaneStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_DefaultFrameWidth:
        return 1;
    case PM_FocusFrameHMargin:
        return cellInset;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_ToolBarItemMargin:
    case PM_ToolBarFrameWidth:
    case PM_ToolBarItemSpacing:
        return 0;
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarTabOverlap:
        return 0;
    case PM_TabBarTabHSpace:
        return 32;
    case PM_TabBarTabVSpace:
        return 12;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int CorvaneStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const {
    if (hint == SH_ItemView_ShowDecorationSelected) return 1;
    // Somebody who scrolls past a closed pop-up doesn't mean to choose another item.
    if (hint == SH_ComboBox_AllowWheelScrolling) return 0;
    // As in alerts, the default button stands where the eye ends, on the right.
    if (hint == SH_DialogButtonLayout) return QDialogButtonBox::GnomeLayout;
    return QProxyStyle::styleHint(hint, option, widget, data);
}

QRect CorvaneStyle::subElementRect(SubElement element, const QStyleOption* option,
                                   const QWidget* widget) const {
    const auto place = QProxyStyle::subElementRect(element, option, widget);
    // Text begins where that of a list's cells does.
    return element == SE_LineEditContents ? place.adjusted(cellInset / 2, 0, -cellInset / 2, 0) : place;
}

QSize CorvaneStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                     const QWidget* widget) const {
    auto result = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (type == CT_PushButton)
        return {std::max(result.width() + 12, 80), std::max(result.height(), size.height() + 12)};
    if (type == CT_ComboBox) return {result.width() + 20, std::max(result.height(), size.height() + 10)};
    return result;
}

} // namespace corvane::qt
