// panel_gallery [--dark] [--scale 1|2] [--points N] FOLDER: draws the panel in each of its states to PNG files.
// panel_gallery [--dark] [--scale 1|2] --compare KEPT FOLDER: draws the same, and fails if a picture differs from the
// kept one of the same name. Those that differ are left in FOLDER, each with a picture of the difference.
// panel_gallery [--dark] [--scale 1|2] [--points N] --show: shows the panel on the desktop, with its own clipboard, and
// reports how long its first frame took.

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
#include <QStringList>
#include <QStyleFactory>
#include <QTest>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
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

using Show = std::function<void(const char* name, const QImage& picture)>;

void drawPanel(const Show& show) {
    for (const State& state : states()) {
        FakeUpdater::reset();
        Stage stage;
        stage.panel.show();
        stage.panel.activateWindow();
        if (!QTest::qWaitForWindowActive(&stage.panel)) qFatal("the panel did not become active");
        QTest::mouseMove(&stage.panel, QPoint(2, 2));
        state.prepare(stage);
        QApplication::processEvents();
        show(state.name, stage.panel.grab().toImage());
    }
}

struct WindowState {
    const char* name;
    std::function<void(ravlin::UpdateWindows&)> show;
};

const std::vector<WindowState>& windowStates() {
    using ravlin::FoundUpdate;
    using ravlin::UpdateError;
    using ravlin::UpdateWindows;
    static const FoundUpdate update = {
        .version = QStringLiteral("1.1.0"),
        .currentVersion = QStringLiteral("1.0.0"),
        .notes = QStringLiteral(
            "## What is new\n\n* Search finds **arrows** as well\n* A [new page](https://ravlin.example/)"
            "\n\nAnd a rule:\n\n---\n\nThe end."),
        .notesAreMarkdown = true,
        .link = QUrl(QStringLiteral("https://ravlin.example/"))};
    const auto offer = [](UpdateWindows& windows, const FoundUpdate& found) {
        windows.showFound(found, /*wasAskedFor=*/true, [](ravlin::UpdateAnswer) {});
    };
    static const std::vector<WindowState> all = {
        {"asking", [](UpdateWindows& windows) { windows.askForPermission([](auto) {}); }},
        {"checking",
         [](UpdateWindows& windows) {
             windows.showChecking([] {});
             QTest::qWait(500);  // until it is worth showing
         }},
        {"downloading",
         [](UpdateWindows& windows) {
             windows.showDownloading([] {});
             windows.showProgress(1'200'000, 3'400'000);
         }},
        {"installing",
         [](UpdateWindows& windows) {
             windows.showDownloading([] {});
             windows.showInstalling();
         }},
        {"found", [offer](UpdateWindows& windows) { offer(windows, update); }},
        {"found-critical",
         [offer](UpdateWindows& windows) {
             FoundUpdate important = update;
             important.isCritical = true;
             important.canBeSkipped = false;
             offer(windows, important);
         }},
        {"found-link",
         [offer](UpdateWindows& windows) {
             FoundUpdate elsewhere = update;
             elsewhere.canBeInstalled = false;
             elsewhere.notes.clear();
             offer(windows, elsewhere);
         }},
        {"up-to-date", [](UpdateWindows& windows) { windows.showUpToDate(QStringLiteral("1.1.0")); }},
        {"too-old", [](UpdateWindows& windows) { windows.showSystemTooOld(QStringLiteral("1.1.0")); }},
        {"system", [](UpdateWindows& windows) { windows.showUpdatesComeWithSystem(QStringLiteral("Debian")); }},
        {"error",
         [](UpdateWindows& windows) { windows.showFailure({.error = UpdateError::signatureIsWrong, .detail = {}}); }},
        {"not-here",
         [](UpdateWindows& windows) {
             windows.showFailure({.error = UpdateError::mayNotReplace,
                                  .detail = QStringLiteral("/opt/applications/Ravlin-1.0.0-x86_64.AppImage")});
         }},
    };
    return all;
}

void drawUpdateWindows(const Show& show) {
    for (const WindowState& state : windowStates()) {
        ravlin::UpdateWindows windows;
        state.show(windows);
        QApplication::processEvents();
        for (QWidget* const window : QApplication::topLevelWidgets())
            if (window->isVisible()) show((std::string("update-") + state.name).c_str(), window->grab().toImage());
    }
}

void drawAll(const Show& show) {
    drawPanel(show);
    drawUpdateWindows(show);
}

QString fileName(const char* name) {
    return QString::fromUtf8(name) + QStringLiteral(".png");
}

/// Their bars move.
const QStringList kMoving = {QStringLiteral("update-checking"), QStringLiteral("update-installing")};

/// The difference of two colours in the channel in which it is greatest.
int distance(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

/// Kept pictures take half the room with fewer shades at the edges of letters: each may be off by this much.
constexpr int kShadeStep = 3;

/// What each colour of a picture is kept as: itself, unless a similar one is more frequent.
std::map<QRgb, QRgb> keptColors(const QImage& picture) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y)];
    std::vector<std::pair<int, QRgb>> byCount;
    for (const auto& [color, count] : counts) byCount.emplace_back(-count, color);
    std::sort(byCount.begin(), byCount.end());
    std::vector<QRgb> kept;
    std::map<QRgb, QRgb> result;
    for (const auto& [count, color] : byCount) {
        const auto like = std::find_if(kept.begin(), kept.end(),
                                       [color = color](QRgb each) { return distance(each, color) <= kShadeStep; });
        result[color] = like == kept.end() ? color : *like;
        if (like == kept.end()) kept.push_back(color);
    }
    return result;
}

/// The same picture with one byte per pixel, if it has few enough colours.
QImage withTable(const QImage& picture) {
    constexpr qsizetype kMaxColors = 256;
    QList<QRgb> colors;
    QImage indexed(picture.size(), QImage::Format_Indexed8);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb color = picture.pixel(x, y);
            if (!colors.contains(color)) colors.append(color);
            if (colors.size() > kMaxColors) return picture;
            indexed.scanLine(y)[x] = static_cast<uchar>(colors.indexOf(color));
        }
    indexed.setColorTable(colors);
    return indexed;
}

void keep(const QImage& picture, const QString& file) {
    constexpr int kSmallestFile = 0;  // the quality, which means the effort for this format
    const std::map<QRgb, QRgb> colors = keptColors(picture);
    QImage kept(picture.size(), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) kept.setPixel(x, y, colors.at(picture.pixel(x, y)));
    if (!withTable(kept).save(file, "PNG", kSmallestFile)) qFatal("cannot write %s", qUtf8Printable(file));
}

/// Compares pictures with kept ones. Two machines with the same version of one system draw the same, except for a shade
/// where their processors round a blended colour differently: every pixel counts.
class Comparison {
public:
    Comparison(QDir kept, QDir folder) : kept_(std::move(kept)), folder_(std::move(folder)) {}

    void add(const char* name, const QImage& picture) {
        if (kMoving.contains(QString::fromUtf8(name))) return;
        const QImage kept(kept_.filePath(fileName(name)));
        if (kept.size() != picture.size()) {
            fail(name, picture, QStringLiteral("has another size"));
            return;
        }
        QImage difference(picture.size(), QImage::Format_RGB32);
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const bool differs = isOther(kept.pixel(x, y), picture.pixel(x, y));
                difference.setPixel(x, y, differs ? qRgb(255, 0, 0) : kept.pixel(x, y));
                count += differs ? 1 : 0;
            }
        }
        if (count == 0) return;
        difference.save(
            folder_.filePath(fileName(name)).replace(QLatin1String(".png"), QLatin1String("-difference.png")));
        fail(name, picture, QStringLiteral("differs in %1 pixels").arg(count));
    }

    bool isFine() const { return failureCount_ == 0; }

private:
    static bool isOther(QRgb a, QRgb b) {
        return distance(a, b) > kShadeStep + 1;  // of 255
    }

    void fail(const char* name, const QImage& picture, const QString& what) {
        keep(picture, folder_.filePath(fileName(name)));
        qWarning("%s %s; see %s", name, qUtf8Printable(what), qUtf8Printable(folder_.absolutePath()));
        ++failureCount_;
    }

    QDir kept_;
    QDir folder_;
    int failureCount_ = 0;
};

/// Reports how long it took until the panel's first frame was drawn.
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

int measureScrolling() {
    Stage stage;
    stage.panel.show();
    QApplication::processEvents();
    QScrollBar& bar = *stage.panel.findChild<QScrollArea*>()->verticalScrollBar();
    std::vector<double> frames;
    constexpr int kStep = 40;
    for (int position = 0; position < bar.maximum(); position += kStep) {
        QElapsedTimer clock;
        clock.start();
        bar.setValue(position);
        QApplication::processEvents();
        frames.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    std::sort(frames.begin(), frames.end());
    qInfo("%zu frames: median %.2f ms, slowest %.2f ms", frames.size(), frames[frames.size() / 2], frames.back());
    return 0;
}

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
    const QCommandLineOption compare(QStringLiteral("compare"), QStringLiteral("compare with the pictures there"),
                                     QStringLiteral("kept"));
    const QCommandLineOption scroll(QStringLiteral("scroll"), QStringLiteral("measure scrolling"));
    parser.addOptions({dark, scale, points, show, compare, scroll});
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("where the pictures go"));
    parser.addHelpOption();
    parser.process(application);

    // The same wherever it is drawn, except for the font size.
    QApplication::setCursorFlashTime(0);  // a cursor that blinks is missing where drawing takes long
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(parser.value(points).toDouble());
    font.setStyleStrategy(QFont::NoSubpixelAntialias);  // subpixels belong to a screen
    QApplication::setFont(font);
    QApplication::setPalette(parser.isSet(dark) ? ravlin::tests::darkPalette() : ravlin::tests::lightPalette());
    if (isShown) return showPanel();
    if (parser.isSet(scroll)) return measureScrolling();

    if (parser.positionalArguments().size() != 1) parser.showHelp(2);
    const QDir folder(parser.positionalArguments().constFirst());
    if (!folder.mkpath(QStringLiteral("."))) qFatal("cannot make the folder");
    if (!parser.isSet(compare)) {
        drawAll([&](const char* name, const QImage& picture) { keep(picture, folder.filePath(fileName(name))); });
        return 0;
    }
    Comparison comparison{QDir(parser.value(compare)), folder};
    drawAll([&](const char* name, const QImage& picture) { comparison.add(name, picture); });
    return comparison.isFine() ? 0 : 1;
}
