// panel_gallery [--dark] [--scale 1|2] [--points N] FOLDER: draws the panel in each of its states to PNG files.
// panel_gallery [--dark] [--scale 1|2] [--points N] --show: shows the panel on the desktop, with a clipboard of its
// own, and tells how long its first frame took.

#include "Engine/TextTransform.h"
#include "Views/MenuView.h"
#include "Views/UpdateWindows.h"
#include "tests/support/FakePasteboard.h"
#include "tests/views/FakeUpdater.h"
#include "tests/views/Palettes.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <functional>
#include <vector>

namespace {

using ravlin::MenuView;
using ravlin::TextTransform;
using ravlin::tests::FakePasteboard;
using ravlin::tests::FakeUpdater;

struct Stage {
    FakePasteboard pasteboard;
    ravlin::tests::SilentUserDriver driver;
    ravlin::UpdaterController updater{driver};
    MenuView panel{updater};

    QWidget* find(const char* name) const { return panel.findChild<QWidget*>(QString::fromUtf8(name)); }
    void type(const char* text) { static_cast<QLineEdit*>(find("searchField"))->insert(QString::fromUtf8(text)); }
    void press(Qt::Key key, int times = 1) {
        for (int i = 0; i < times; ++i) QTest::keyClick(panel.focusWidget(), key);
    }
    void scrollTo(int position) { panel.findChild<QScrollArea*>()->verticalScrollBar()->setValue(position); }
};

struct State {
    const char* name;
    std::function<void(Stage&)> prepare;
};

const std::vector<State>& states() {
    static const std::vector<State> all = {
        {"empty", [](Stage&) {}},
        {"search-json", [](Stage& stage) { stage.type("json"); }},
        {"search-arrow", [](Stage& stage) { stage.type("→"); }},
        {"search-blanks", [](Stage& stage) { stage.type("   "); }},
        {"search-nothing", [](Stage& stage) { stage.type("  xyz "); }},
        {"search-nothing-long",
         [](Stage& stage) {
             stage.type(
                 "a rather long text that was surely pasted by mistake andonelongwordattheend"
                 "thatneverendsandneverbreaksbecauseithasnoblankatall");
         }},
        {"success",
         [](Stage& stage) {
             stage.pasteboard.copyTextElsewhere("hello");
             stage.panel.apply(TextTransform::upperCase);
         }},
        {"success-long",
         [](Stage& stage) {
             stage.pasteboard.copyTextElsewhere(std::string(1234567, 'x'));
             stage.panel.apply(TextTransform::normalizeDashes);
         }},
        {"failure-empty", [](Stage& stage) { stage.panel.apply(TextTransform::upperCase); }},
        {"failure-no-text",
         [](Stage& stage) {
             stage.pasteboard.copyElsewhere({});
             stage.panel.apply(TextTransform::upperCase);
         }},
        {"failure-changed",
         [](Stage& stage) {
             stage.pasteboard.copyTextElsewhere("hello");
             stage.pasteboard.before("changeCount", 2, [&stage] { stage.pasteboard.copyTextElsewhere("other"); });
             stage.panel.apply(TextTransform::upperCase);
         }},
        {"update-check-disabled",
         [](Stage& stage) {
             FakeUpdater::canCheck = false;
             stage.type("t");
         }},
        {"highlight", [](Stage& stage) { stage.press(Qt::Key_Down, 3); }},
        {"highlight-under-header",
         [](Stage& stage) {
             stage.press(Qt::Key_Down, 12);
             stage.press(Qt::Key_Up, 5);
         }},
        {"highlight-last",
         [](Stage& stage) {
             stage.press(Qt::Key_Down);
             stage.press(Qt::Key_End);
         }},
        {"focus-clear",
         [](Stage& stage) {
             stage.type("json");
             stage.press(Qt::Key_Tab);
         }},
        {"focus-quit", [](Stage& stage) { stage.press(Qt::Key_Backtab); }},
        {"scrolled", [](Stage& stage) { stage.scrollTo(520); }},
        {"scrolled-pushed", [](Stage& stage) { stage.scrollTo(246); }},
        {"hover", [](Stage& stage) { QTest::mouseMove(stage.find("row.stripFormatting")); }},
        {"pressed",
         [](Stage& stage) {
             QTest::mouseMove(stage.find("row.stripFormatting"));
             QTest::mousePress(stage.find("row.stripFormatting"), Qt::LeftButton);
         }},
    };
    return all;
}

void drawAll(const QDir& folder) {
    for (const State& state : states()) {
        FakeUpdater::reset();
        Stage stage;
        stage.panel.show();
        stage.panel.activateWindow();
        if (!QTest::qWaitForWindowActive(&stage.panel)) qFatal("the panel did not become active");
        QTest::mouseMove(&stage.panel, QPoint(2, 2));
        state.prepare(stage);
        QApplication::processEvents();
        stage.panel.grab().save(folder.filePath(QString::fromUtf8(state.name) + QStringLiteral(".png")));
    }
    ravlin::UpdateWindows windows;
    windows.showUpdatesComeWithSystem();
    QApplication::processEvents();
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->isVisible()) window->grab().save(folder.filePath(QStringLiteral("software-update.png")));
}

/// Tells how long it took until the first frame of the panel was drawn.
class FrameClock final : public QObject {
public:
    FrameClock() { clock_.start(); }

protected:
    bool eventFilter(QObject* panel, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            QMetaObject::invokeMethod(
                this, [this] { qInfo("first frame after %.1f ms", static_cast<double>(clock_.nsecsElapsed()) / 1e6); },
                Qt::QueuedConnection);
            panel->removeEventFilter(this);
        }
        return false;
    }

private:
    QElapsedTimer clock_;
};

int showPanel() {
    FrameClock clock;
    Stage stage;
    stage.pasteboard.copyTextElsewhere("hello");
    stage.panel.installEventFilter(&clock);
    QObject::connect(&stage.panel, &MenuView::quitRequested, qApp, &QApplication::quit);
    stage.panel.show();
    stage.panel.activateWindow();
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    const QByteArrayList arguments(argv + 1, argv + argc);
    const bool isShown = arguments.contains("--show");
    if (!isShown) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (const auto scale = arguments.indexOf("--scale") + 1; scale > 0 && scale < arguments.size())
        qputenv("QT_SCALE_FACTOR", arguments[scale]);
    QApplication application(argc, argv);

    QCommandLineParser parser;
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("use a dark palette"));
    const QCommandLineOption scale(QStringLiteral("scale"), QStringLiteral("device pixels per logical pixel"),
                                   QStringLiteral("factor"), QStringLiteral("1"));
    const QCommandLineOption points(QStringLiteral("points"), QStringLiteral("size of the desktop's font"),
                                    QStringLiteral("points"), QStringLiteral("10"));
    const QCommandLineOption show(QStringLiteral("show"), QStringLiteral("show the panel on the desktop"));
    parser.addOptions({dark, scale, points, show});
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("where the pictures go"));
    parser.addHelpOption();
    parser.process(application);

    QFont font = QApplication::font();
    font.setPointSizeF(parser.value(points).toDouble());
    QApplication::setFont(font);
    QApplication::setPalette(parser.isSet(dark) ? ravlin::tests::darkPalette() : ravlin::tests::lightPalette());
    if (isShown) return showPanel();

    if (parser.positionalArguments().size() != 1) parser.showHelp(2);
    const QDir folder(parser.positionalArguments().constFirst());
    if (!folder.mkpath(QStringLiteral("."))) qFatal("cannot make the folder");
    drawAll(folder);
    return 0;
}
