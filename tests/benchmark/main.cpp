// How long the panel of nodes keeps its user waiting where the directory service knows 100 000 nodes, side by
// side with Qt's ready-made lists and with what the machine can't do faster:
//
//   QT_QPA_PLATFORM=offscreen corvane-benchmark
//
// Every measurement of a widget ends when it has been painted.
#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMainWindow>
#include <QSortFilterProxyModel>
#include <QStringListModel>
#include <QTest>
#include <QTreeWidget>
#include <algorithm>
#include <chrono>
#include <functional>

#include "benchmark/BigMachine.h"
#include "benchmark/Comparison.h"
#include "qt/look/Appearance.h"

using namespace corvane;
using bench::BigMachine;

namespace {

constexpr int nodeCount = 100'000;
constexpr int chosenCount = 100;
constexpr int repetitions = 10;
constexpr QSize panelSize(440, 300);

using Work = std::function<void()>;

/// Measures `work` alone; `before` and `behind` put things into place.
void measure(const std::string& name, Work before, Work work, Work behind) {
    const auto run = [=](benchmark::State& state) {
        for (auto _ : state) {
            before();
            const auto start = std::chrono::steady_clock::now();
            work();
            const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
            behind();
            state.SetIterationTime(taken.count());
        }
    };
    benchmark::RegisterBenchmark(name.c_str(), run)
        ->UseManualTime()
        ->Iterations(repetitions)
        ->Unit(benchmark::kMillisecond);
}

QStringList asTexts(const std::vector<std::string>& names) {
    QStringList texts;
    for (const auto& name : names)
        texts << QString::fromStdString(name);
    return texts;
}

void show(QWidget& widget) {
    widget.resize(panelSize);
    widget.show();
    widget.repaint();
}

QListWidget& filledList(std::unique_ptr<QListWidget>& list, const QStringList& texts) {
    list = std::make_unique<QListWidget>();
    list->setUniformItemSizes(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->addItems(texts);
    show(*list);
    return *list;
}

void fillTree(QTreeWidget& tree, const QStringList& texts) {
    tree.setUniformRowHeights(true);
    tree.setRootIsDecorated(false);
    QList<QTreeWidgetItem*> items;
    for (const auto& text : texts)
        items << new QTreeWidgetItem(QStringList(text));
    tree.addTopLevelItems(items);
    show(tree);
}

char folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::size_t countContaining(const std::vector<std::string>& names, const std::string& text) {
    const auto same = [](char a, char b) { return folded(a) == folded(b); };
    return std::size_t(std::ranges::count_if(names, [&](const std::string& name) {
        return std::search(name.begin(), name.end(), text.begin(), text.end(), same) != name.end();
    }));
}

void typeInFilter(BigMachine& machine, Qt::Key key) {
    QTest::keyClick(machine.shell().findChild<QLineEdit*>("panelFilter"), key);
    machine.shell().repaint();
}

/// Things that the measurements share; made once.
struct Bench {
    BigMachine machine{nodeCount};
    QStringList texts = asTexts(machine.names());
    std::unique_ptr<QListWidget> list;
    std::unique_ptr<QTreeWidget> tree;
    std::vector<std::string> copy;
};

void measureOpening(Bench& bench) {
    measure(
        "open/panel", [] {},
        [&bench] {
            bench.machine.openPanel();
            bench.machine.shell().repaint();
        },
        [&bench] {
            bench.machine.requireRows(nodeCount);
            bench.machine.closePanel();
            gui::settle(0);
        });
    measure(
        "open/QListWidget", [] {}, [&bench] { filledList(bench.list, bench.texts); },
        [&bench] { bench.list.reset(); });
    measure(
        "open/QTreeWidget", [] {},
        [&bench] {
            bench.tree = std::make_unique<QTreeWidget>();
            fillTree(*bench.tree, bench.texts);
        },
        [&bench] { bench.tree.reset(); });
    measure(
        "open/copy of the names", [] {}, [&bench] { bench.copy = std::vector(bench.machine.names()); },
        [&bench] { bench.copy = {}; });
}

/// One letter that leaves about a tenth of the rows.
void measureTyping(Bench& bench) {
    static QStringListModel model;
    static QSortFilterProxyModel filter;
    static std::unique_ptr<QListView> view;
    measure(
        "keystroke/panel",
        [&bench] {
            bench.machine.openPanel();
            gui::settle(0);
            typeInFilter(bench.machine, Qt::Key_7);
        },
        [&bench] { typeInFilter(bench.machine, Qt::Key_7); },
        [&bench] {
            bench.machine.requireRows(int(countContaining(bench.machine.names(), "77")));
            bench.machine.closePanel();
        });
    measure(
        "keystroke back to all rows/panel",
        [&bench] {
            bench.machine.openPanel();
            gui::settle(0);
            typeInFilter(bench.machine, Qt::Key_7);
        },
        [&bench] { typeInFilter(bench.machine, Qt::Key_Backspace); },
        [&bench] {
            bench.machine.requireRows(nodeCount);
            bench.machine.closePanel();
        });
    const auto filtered = [&bench] {
        model.setStringList(bench.texts);
        filter.setSourceModel(&model);
        filter.setFilterCaseSensitivity(Qt::CaseInsensitive);
        filter.setFilterFixedString("7");
        view = std::make_unique<QListView>();
        view->setUniformItemSizes(true);
        view->setModel(&filter);
        show(*view);
    };
    const auto typed = [](const QString& text) {
        return [text] {
            filter.setFilterFixedString(text);
            view->repaint();
        };
    };
    const auto gone = [] { view.reset(); };
    measure("keystroke/QSortFilterProxyModel", filtered, typed("77"), gone);
    measure("keystroke back to all rows/QSortFilterProxyModel", filtered, typed(""), gone);
    measure(
        "keystroke/search through the names", [] {},
        [&bench] { benchmark::DoNotOptimize(countContaining(bench.machine.names(), "77")); }, [] {});
}

void measureAdding(Bench& bench) {
    static std::unique_ptr<QListWidget> target;
    measure(
        "add 100/panel",
        [&bench] {
            bench.machine.openPanel();
            gui::settle(0);
            bench.machine.user().clickRow("panelNodes", 0);
            bench.machine.user().clickRow("panelNodes", chosenCount - 1, Qt::ShiftModifier);
        },
        [&bench] {
            bench.machine.controller().sharedNodePaneController().addNodeAction();
            bench.machine.shell().repaint();
        },
        [&bench] {
            if (bench.machine.nodesOnPolicy() != chosenCount + 2)
                throw std::runtime_error("not all were added");
            bench.machine.controller().deleteNodesFromAuthSearchPolicyWithPrefix("/LDAP/");
            gui::settle(0);
        });
    measure(
        "add 100/QListWidget",
        [&bench] {
            filledList(bench.list, bench.texts);
            filledList(target, {});
        },
        [&bench] {
            for (int row = 0; row < chosenCount; ++row)
                target->addItem(bench.list->takeItem(0));
            bench.list->repaint();
            target->repaint();
        },
        [&bench] { bench.list.reset(); });
}

void measureSelecting(Bench& bench) {
    measure(
        "select all/panel",
        [&bench] {
            bench.machine.openPanel();
            gui::settle(0);
            bench.machine.user().clickRow("panelNodes", 0);
        },
        [&bench] {
            QTest::keyClick(&bench.machine.panelTable(), Qt::Key_A, Qt::ControlModifier);
            bench.machine.shell().repaint();
        },
        [&bench] { bench.machine.closePanel(); });
    measure(
        "select all/QListWidget", [&bench] { filledList(bench.list, bench.texts); },
        [&bench] {
            bench.list->selectAll();
            bench.list->repaint();
        },
        [&bench] { bench.list.reset(); });
}

} // namespace

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, arguments);
    qt::installAppearance(application, qt::ColorScheme::light);
    Bench bench;
    measureOpening(bench);
    measureTyping(bench);
    measureAdding(bench);
    measureSelecting(bench);
    bench::Comparison comparison;
    benchmark::RunSpecifiedBenchmarks(&comparison);
    return 0;
}
