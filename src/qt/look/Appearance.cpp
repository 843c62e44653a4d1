#include "qt/look/Appearance.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <algorithm>
#include <cmath>

#include "qt/look/CorvaneStyle.h"
#include "qt/look/Icons.h"

namespace corvane::qt {

namespace {

struct Scheme {
    const char *window, *base, *alternate, *text, *secondary, *disabled, *button, *line, *accent, *accentText,
        *link, *toolTip;
};

constexpr Scheme lightScheme = {"#f4f5f7", "#ffffff", "#f8f9fa", "#1d2630", "#5a6675", "#98a1ad",
                                "#ffffff", "#858d98", "#2563c9", "#ffffff", "#1f57b3", "#ffffff"};
constexpr Scheme darkScheme = {"#22262c", "#191c21", "#1e2227", "#e6e9ed", "#9fa9b6", "#68727f",
                               "#343a43", "#7d8693", "#3272d9", "#ffffff", "#7fb0ff", "#343a43"};

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

namespace {

double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor between(const QColor& a, const QColor& b, double part) {
    const auto channel = [part](float x, float y) { return float(x + (y - x) * part); };
    return QColor::fromRgbF(channel(a.redF(), b.redF()), channel(a.greenF(), b.greenF()),
                            channel(a.blueF(), b.blueF()));
}

double leastContrast(const QColor& color, const QList<QColor>& grounds) {
    double least = 21;
    for (const auto& ground : grounds)
        least = std::min(least, contrast(color, ground));
    return least;
}

} // namespace

double contrast(const QColor& color, const QColor& ground) {
    const double one = luminance(between(ground, color, color.alphaF()));
    const double other = luminance(ground);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

QColor restingSelection(const QPalette& palette) {
    constexpr double most = 0.3;
    constexpr double step = 0.02;
    const auto base = palette.color(QPalette::Base);
    for (double part = most; part > 0; part -= step) {
        const QColor ground = between(base, palette.color(QPalette::Highlight), part).rgb();
        const bool isReadable = contrast(palette.color(QPalette::Text), ground) >= readableText &&
                                contrast(palette.color(QPalette::PlaceholderText), ground) >= readableText;
        if (isReadable) return ground;
    }
    return base;
}

QColor strengthened(const QColor& color, const QList<QColor>& grounds, double wanted) {
    if (leastContrast(color, grounds) >= wanted) return color;
    const auto opaque = between(grounds.front(), color, color.alphaF());
    const bool blackIsBetter = leastContrast(Qt::black, grounds) >= leastContrast(Qt::white, grounds);
    const QColor strongest = blackIsBetter ? Qt::black : Qt::white;
    constexpr int steps = 20;
    for (int step = 1; step < steps; ++step)
        if (const auto tried = between(opaque, strongest, double(step) / steps);
            leastContrast(tried, grounds) >= wanted)
            return tried;
    return strongest;
}

QPalette readable(QPalette palette) {
    using Role = QPalette::ColorRole;
    const auto raise = [&palette](QPalette::ColorGroup group, Role role, const QList<Role>& on,
                                  double wanted) {
        QList<QColor> grounds;
        for (const auto ground : on)
            grounds << palette.color(group, ground);
        const auto before = palette.color(group, role);
        if (const auto now = strengthened(before, grounds, wanted); now != before)
            palette.setColor(group, role, now);
    };
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        raise(group, Role::WindowText, {Role::Window}, readableText);
        raise(group, Role::Text, {Role::Base, Role::AlternateBase}, readableText);
        raise(group, Role::ButtonText, {Role::Button}, readableText);
        raise(group, Role::PlaceholderText, {Role::Window, Role::Base, Role::AlternateBase}, readableText);
        raise(group, Role::ToolTipText, {Role::ToolTipBase}, readableText);
        raise(group, Role::Link, {Role::Window, Role::Base}, readableText);
        raise(group, Role::HighlightedText, {Role::Highlight}, readableText);
        raise(group, Role::Mid, {Role::Window, Role::Base, Role::Button}, visibleBorder);
    }
    return palette;
}

namespace {

/// Keeps what the desktop's colours lack in contrast mended, also after another theme was chosen.
class ContrastKeeper final : public QObject {
public:
    explicit ContrastKeeper(QApplication& application) : QObject(&application) {
        application.installEventFilter(this);
        mend();
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == qApp && event->type() == QEvent::ThemeChange) {
            QApplication::setPalette(QPalette()); // the theme's own again
            mend();
        }
        return false;
    }

private:
    static void mend() { QApplication::setPalette(readable(QApplication::palette())); }
};

} // namespace

QColor textColor(toolkit::TextColor color, const QPalette& palette) {
    switch (color) {
    case toolkit::TextColor::gray:
        return palette.color(QPalette::PlaceholderText);
    case toolkit::TextColor::red:
        return strengthened(isDark(palette) ? QColor("#ff8f85") : QColor("#b3261e"),
                            {palette.color(QPalette::Base), palette.color(QPalette::AlternateBase)},
                            readableText);
    case toolkit::TextColor::black:
        break;
    }
    return palette.color(QPalette::Text);
}

void installAppearance(QApplication& application, ColorScheme scheme) {
    QApplication::setStyle(new CorvaneStyle);
    if (scheme != ColorScheme::automatic || !desktopHasTheme())
        QApplication::setPalette(ownPalette(scheme == ColorScheme::dark));
    else
        new ContrastKeeper(application);
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
