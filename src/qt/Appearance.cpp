#include "qt/Appearance.h"

#include <QApplication>
#include <QLabel>

#include "qt/CorvaneStyle.h"
#include "qt/Icons.h"

namespace corvane::qt {

namespace {

struct Scheme {
    const char *window, *base, *alternate, *text, *secondary, *disabled, *button, *line, *accent, *accentText,
        *link, *toolTip;
};

constexpr Scheme lightScheme = {"#f4f5f7", "#ffffff", "#f8f9fa", "#1d2630", "#5a6675", "#98a1ad",
                                "#ffffff", "#c6ccd4", "#2563c9", "#ffffff", "#1f57b3", "#ffffff"};
constexpr Scheme darkScheme = {"#22262c", "#191c21", "#1e2227", "#e6e9ed", "#9fa9b6", "#68727f",
                               "#343a43", "#464e59", "#3b7de0", "#ffffff", "#7fb0ff", "#343a43"};

bool desktopHasTheme() {
    return qEnvironmentVariableIsSet("XDG_CURRENT_DESKTOP") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME");
}

} // namespace

QPalette ownPalette(bool dark) {
    const auto& scheme = dark ? darkScheme : lightScheme;
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, const char* color) {
        palette.setColor(role, color);
    };
    set(QPalette::Window, scheme.window);
    set(QPalette::Base, scheme.base);
    set(QPalette::AlternateBase, scheme.alternate);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        set(role, scheme.text);
    set(QPalette::BrightText, "#ffffff");
    set(QPalette::PlaceholderText, scheme.secondary);
    set(QPalette::Button, scheme.button);
    set(QPalette::Mid, scheme.line);
    set(QPalette::Dark, scheme.line);
    set(QPalette::Light, scheme.base);
    set(QPalette::Midlight, scheme.alternate);
    set(QPalette::Shadow, "#000000");
    set(QPalette::Highlight, scheme.accent);
    set(QPalette::HighlightedText, scheme.accentText);
    set(QPalette::Link, scheme.link);
    set(QPalette::LinkVisited, scheme.link);
    set(QPalette::ToolTipBase, scheme.toolTip);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, scheme.disabled);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, scheme.line);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, scheme.text);
    return palette;
}

bool isDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < 128; }

QColor textColor(toolkit::TextColor color, const QPalette& palette) {
    switch (color) {
    case toolkit::TextColor::gray:
        return palette.color(QPalette::PlaceholderText);
    case toolkit::TextColor::red:
        return isDark(palette) ? QColor("#ff8f85") : QColor("#b3261e");
    case toolkit::TextColor::black:
        break;
    }
    return palette.color(QPalette::Text);
}

void installAppearance(QApplication& application, ColorScheme scheme) {
    QApplication::setStyle(new CorvaneStyle);
    if (scheme != ColorScheme::automatic || !desktopHasTheme())
        QApplication::setPalette(ownPalette(scheme == ColorScheme::dark));
    application.setWindowIcon(icon("Corvane"));
}

void makeHeading(QLabel& label, double scale) {
    auto font = label.font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setWeight(QFont::DemiBold);
    label.setFont(font);
}

// The role, not the colour: the label then follows a change of theme by itself.
void makeSecondary(QLabel& label) { label.setForegroundRole(QPalette::PlaceholderText); }

} // namespace corvane::qt
