#include "Platform/Desktop/StatusIcon.h"
#include "Platform/Desktop/StatusItem.h"
#include "tests/desktop/FakeTray.h"

#include <QApplication>
#include <QCursor>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <xcb/xcb.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

const QString kItemPath = QStringLiteral("/StatusNotifierItem");
const QString kItemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString kIconName = QStringLiteral("org.ravlin.ravlin-symbolic");
const QString kIconFile = QStringLiteral("/hicolor/symbolic/apps/org.ravlin.ravlin-symbolic.svg");
const QString kMenuInterface = QStringLiteral("com.canonical.dbusmenu");

/// Where the icon is next to a program that is not installed.
QString ownThemes() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/icons"));
}

/// A status item, and the tray of a desktop that has it from the start.
struct Desktop {
    FakeTray tray;
    StatusItem item{QDBusConnection::sessionBus()};

    Desktop() {
        if (!eventually([&] { return item.isShown(); })) ADD_FAILURE() << "the item is not shown";
    }

    QVariantMap properties() const {
        const QDBusMessage answer = tray.ask(kItemPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("GetAll"), {kItemInterface});
        return qdbus_cast<QVariantMap>(answer.arguments().value(0));
    }
    QDBusMessage askItem(const char* method, const QVariantList& arguments) const {
        return tray.ask(kItemPath, kItemInterface, QString::fromLatin1(method), arguments);
    }
    QDBusMessage askMenu(const char* method, const QVariantList& arguments) const {
        const QString path = properties().value(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
        return tray.ask(path, kMenuInterface, QString::fromLatin1(method), arguments);
    }
};

TEST(StatusItemRegistration, HappensAtOnceWhereThereIsATray) {
    const Desktop desktop;
    EXPECT_EQ(desktop.tray.registrations(), QStringList{QDBusConnection::sessionBus().baseService()});
}

TEST(StatusItemRegistration, HappensWhenTheTrayComesLate) {
    const StatusItem item(QDBusConnection::sessionBus());
    const FakeTray tray;
    EXPECT_TRUE(eventually([&] { return !tray.registrations().isEmpty(); }));
}

TEST(StatusItemRegistration, HappensAgainWhenTheTrayRestarts) {
    auto tray = std::make_unique<FakeTray>();
    const StatusItem item(QDBusConnection::sessionBus());
    ASSERT_TRUE(eventually([&] { return !tray->registrations().isEmpty(); }));
    tray.reset();
    tray = std::make_unique<FakeTray>();
    EXPECT_TRUE(eventually([&] { return !tray->registrations().isEmpty(); }));
}

TEST(StatusItemRegistration, HappensAgainWhenAHostComesAndOnlyThenTheItemIsShown) {
    FakeTray tray(/*hasHost=*/false);
    const StatusItem item(QDBusConnection::sessionBus());
    ASSERT_TRUE(eventually([&] { return tray.registrations().size() == 1; }));
    EXPECT_FALSE(item.isShown());
    tray.addHost();
    EXPECT_TRUE(eventually([&] { return tray.registrations().size() == 2 && item.isShown(); }));
}

TEST(StatusItemProperties, AreThoseHostsAskFor) {
    const QVariantMap properties = Desktop().properties();
    const std::vector<std::pair<const char*, QVariant>> expected = {
        {"Category", QStringLiteral("ApplicationStatus")},
        {"Id", QStringLiteral("org.ravlin.ravlin")},
        {"Title", QStringLiteral("Ravlin")},
        {"Status", QStringLiteral("Active")},
        {"WindowId", 0},
        {"IconThemePath", ownThemes()},
        {"IconName", kIconName},
        {"OverlayIconName", QString()},
        {"AttentionIconName", QString()},
        {"AttentionMovieName", QString()},
        {"ItemIsMenu", false},
    };
    for (const auto& [name, value] : expected) EXPECT_EQ(properties.value(QString::fromLatin1(name)), value) << name;
    EXPECT_NE(properties.value(QStringLiteral("Menu")).value<QDBusObjectPath>().path(), QStringLiteral("/NO_DBUSMENU"));
}

TEST(StatusItemProperties, ToolTipIsTheName) {
    const QVariant toolTip = Desktop().properties().value(QStringLiteral("ToolTip"));
    const auto argument = toolTip.value<QDBusArgument>();
    EXPECT_EQ(argument.currentSignature(), QStringLiteral("(sa(iiay)ss)"));
    EXPECT_EQ(qdbus_cast<StatusNotifierToolTip>(argument).title, QStringLiteral("Ravlin"));
}

QList<StatusNotifierPixmap> pixmaps(const Desktop& desktop) {
    return qdbus_cast<QList<StatusNotifierPixmap>>(desktop.properties().value(QStringLiteral("IconPixmap")));
}

/// How many pixels are (partly) covered, all of them in `color`; -1 if one has another colour.
int coveredPixels(const StatusNotifierPixmap& pixmap, const QColor& color) {
    int count = 0;
    for (qsizetype at = 0; at + 4 <= pixmap.pixels.size(); at += 4) {
        const auto byte = [&](int offset) { return int(static_cast<unsigned char>(pixmap.pixels[at + offset])); };
        if (byte(0) == 0) continue;
        // A pixel that is partly covered has lost the low bits of its colour.
        const int lost = byte(0) == 255 ? 0 : byte(0) < 128 ? 255 : 1;
        const auto differs = [&](int offset, int channel) { return std::abs(byte(offset) - channel) > lost; };
        if (differs(1, color.red()) || differs(2, color.green()) || differs(3, color.blue())) return -1;
        ++count;
    }
    return count;
}

TEST(StatusItemPixmaps, AreSquaresOfEverySizeInOneColour) {
    const Desktop desktop;
    const QColor color(StatusIcon::kColorForAnyTray);
    std::vector<int> sizes;
    for (const StatusNotifierPixmap& pixmap : pixmaps(desktop)) {
        sizes.push_back(pixmap.width);
        EXPECT_EQ(pixmap.height, pixmap.width);
        EXPECT_EQ(pixmap.pixels.size(), 4 * pixmap.width * pixmap.height);
        EXPECT_GT(coveredPixels(pixmap, color), pixmap.width * pixmap.height / 20) << pixmap.width;
    }
    EXPECT_EQ(sizes, (std::vector<int>{16, 22, 24, 32, 48, 64}));
}

/// Counts the signals that a program on the bus receives.
class SignalCounter final : public QObject {
    Q_OBJECT

public:
    SignalCounter(QDBusConnection bus, const QString& interface, const QString& name) {
        bus.connect(QDBusConnection::sessionBus().baseService(), {}, interface, name, this, SLOT(count(QDBusMessage)));
    }
    const QList<QDBusMessage>& messages() const { return messages_; }

private Q_SLOTS:
    void count(const QDBusMessage& message) { messages_.append(message); }

private:
    QList<QDBusMessage> messages_;
};

/// Of WCAG, 0 to 1.
double luminance(const QColor& color) {
    const auto part = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

TEST(StatusItemPixmaps, CanBeSeenOnBlackAndOnWhite) {
    const double own = luminance(QColor(StatusIcon::kColorForAnyTray));
    EXPECT_GE((own + 0.05) / (luminance(Qt::black) + 0.05), 3);
    EXPECT_GE((luminance(Qt::white) + 0.05) / (own + 0.05), 3);
}

TEST(StatusItemIcon, HasThatColourForHostsThatShowTheNamedOneAsItIs) {
    QFile file(ownThemes() + kIconFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains(QColor(StatusIcon::kColorForAnyTray).name().toLatin1()));
}

TEST(StatusItemIcon, IsTheSystemsWhereItIsInstalled) {
    const QTemporaryDir data;
    ASSERT_TRUE(QDir().mkpath(data.filePath(QStringLiteral("icons/hicolor/symbolic/apps"))));
    ASSERT_TRUE(QFile::copy(ownThemes() + kIconFile, data.filePath(QStringLiteral("icons") + kIconFile)));
    const QByteArray before = qgetenv("XDG_DATA_DIRS");
    qputenv("XDG_DATA_DIRS", QFile::encodeName(data.path()));
    EXPECT_EQ(StatusIcon::themePath(), QString());
    EXPECT_EQ(StatusIcon::themeName(), kIconName);
    before.isNull() ? qunsetenv("XDG_DATA_DIRS") : qputenv("XDG_DATA_DIRS", before);
}

TEST(StatusItemIcon, IsPaintedAnewWhenTheColoursOfTheSessionChange) {
    const Desktop desktop;
    const SignalCounter newIcon(desktop.tray.bus(), kItemInterface, QStringLiteral("NewIcon"));
    const QPalette before = QGuiApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::WindowText, Qt::white);
    QGuiApplication::setPalette(dark);
    EXPECT_TRUE(eventually([&] { return !newIcon.messages().isEmpty(); }));
    QGuiApplication::setPalette(before);
}

TEST(StatusItemActivation, GivesThePointOfALeftOrMiddleClick) {
    const Desktop desktop;
    QCursor::setPos(890, 20);
    QSignalSpy activated(&desktop.item, &StatusItem::activated);
    desktop.askItem("Activate", {900, 12});
    desktop.askItem("SecondaryActivate", {901, 13});
    ASSERT_EQ(activated.size(), 2);
    EXPECT_EQ(activated[0][0].toRect(), QRect(900, 12, 1, 1));
    EXPECT_EQ(activated[1][0].toRect(), QRect(901, 13, 1, 1));
}

TEST(StatusItemActivation, APointFarFromThePointerIsNotThatOfAClick) {
    const Desktop desktop;
    QCursor::setPos(890, 20);
    QSignalSpy activated(&desktop.item, &StatusItem::activated);
    for (const QPoint point : {QPoint(0, 0), QPoint(0, 26), QPoint(890, 85), QPoint(825, 20)}) {
        desktop.askItem("Activate", {point.x(), point.y()});
        EXPECT_TRUE(activated.takeLast()[0].toRect().isNull()) << point.x() << ", " << point.y();
    }
}

TEST(StatusItemActivation, CarriesTheHostsTokenOnce) {
    const Desktop desktop;
    QSignalSpy activated(&desktop.item, &StatusItem::activated);
    desktop.askItem("ProvideXdgActivationToken", {QStringLiteral("token-1")});
    desktop.askItem("Activate", {900, 12});
    desktop.askItem("Activate", {900, 12});
    ASSERT_EQ(activated.size(), 2);
    EXPECT_EQ(activated[0][1].toString(), QStringLiteral("token-1"));
    EXPECT_EQ(activated[1][1].toString(), QString());
}

TEST(StatusItemActivation, ATokenThatNoDesktopMakesIsForgotten) {
    const Desktop desktop;
    QSignalSpy activated(&desktop.item, &StatusItem::activated);
    for (const int size : {1024, 1025, 1 << 24}) {
        desktop.askItem("ProvideXdgActivationToken", {QString(size, QLatin1Char('x'))});
        desktop.askItem("Activate", {900, 12});
    }
    ASSERT_EQ(activated.size(), 3);
    EXPECT_EQ(activated[0][1].toString().size(), 1024);
    EXPECT_EQ(activated[1][1].toString(), QString());
    EXPECT_EQ(activated[2][1].toString(), QString());
}

TEST(StatusItemActivation, TheMenuOpensAtThePointerWhereTheHostsPointIsUseless) {
    const Desktop desktop;
    QCursor::setPos(400, 300);
    desktop.askItem("ContextMenu", {0, 26});
    ASSERT_TRUE(eventually([] { return QApplication::activePopupWidget() != nullptr; }));
    EXPECT_EQ(QApplication::activePopupWidget()->pos(), QPoint(400, 300));
    QApplication::activePopupWidget()->close();
}

TEST(StatusItemActivation, IgnoresTheWheel) {
    const Desktop desktop;
    QSignalSpy activated(&desktop.item, &StatusItem::activated);
    const QDBusMessage answer = desktop.askItem("Scroll", {120, QStringLiteral("vertical")});
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(activated.isEmpty());
}

/// The entries of a menu as "id label", with "(off)" for those that are off.
std::vector<std::string> entries(const DBusMenuLayoutItem& layout) {
    std::vector<std::string> texts;
    for (const QDBusVariant& child : layout.children) {
        const auto entry = qdbus_cast<DBusMenuLayoutItem>(child.variant().value<QDBusArgument>());
        const bool enabled = entry.properties.value(QStringLiteral("enabled"), true).toBool();
        texts.push_back(std::to_string(entry.id) + " " +
                        entry.properties.value(QStringLiteral("label")).toString().toStdString() +
                        (enabled ? "" : " (off)"));
    }
    return texts;
}

DBusMenuLayoutItem layout(const Desktop& desktop, int parent, int depth, const QStringList& names = {}) {
    const QDBusMessage answer = desktop.askMenu("GetLayout", {parent, depth, names});
    EXPECT_EQ(answer.signature(), QStringLiteral("u(ia{sv}av)"));
    return qdbus_cast<DBusMenuLayoutItem>(answer.arguments().value(1));
}

TEST(StatusItemMenu, HasThreeEntries) {
    const Desktop desktop;
    const DBusMenuLayoutItem menu = layout(desktop, 0, -1);
    EXPECT_EQ(menu.properties.value(QStringLiteral("children-display")), QStringLiteral("submenu"));
    EXPECT_EQ(entries(menu), (std::vector<std::string>{"1 Open Ravlin", "2 Check for Updates\u2026", "3 Quit"}));
}

TEST(StatusItemMenu, GivesNoMoreOfItselfThanAskedFor) {
    const Desktop desktop;
    EXPECT_TRUE(layout(desktop, 0, 0).children.isEmpty());
    EXPECT_EQ(layout(desktop, 3, -1).properties.value(QStringLiteral("label")), QStringLiteral("Quit"));
    EXPECT_EQ(layout(desktop, 3, -1, {QStringLiteral("enabled")}).properties.keys(),
              QStringList{QStringLiteral("enabled")});
}

TEST(StatusItemMenu, GivesPropertiesOfSomeOrAllEntries) {
    const Desktop desktop;
    const auto ids = [&](const QList<int>& asked) {
        const QDBusMessage answer =
            desktop.askMenu("GetGroupProperties", {QVariant::fromValue(asked), QStringList{QStringLiteral("label")}});
        std::vector<int> given;
        for (const DBusMenuItem& item : qdbus_cast<QList<DBusMenuItem>>(answer.arguments().value(0)))
            given.push_back(item.id);
        return given;
    };
    EXPECT_EQ(ids({1, 3, 99}), (std::vector<int>{1, 3}));
    EXPECT_EQ(ids({}), (std::vector<int>{0, 1, 2, 3}));
    const QDBusMessage label = desktop.askMenu("GetProperty", {3, QStringLiteral("label")});
    EXPECT_EQ(label.arguments().value(0).value<QDBusVariant>().variant().toString(), QStringLiteral("Quit"));
}

struct MenuCase {
    int id;
    void (StatusItem::*signal)();
};

TEST(StatusItemMenu, ClicksArePassedOn) {
    const Desktop desktop;
    QSignalSpy open(&desktop.item, &StatusItem::openRequested);
    QSignalSpy check(&desktop.item, &StatusItem::checkForUpdatesRequested);
    QSignalSpy quit(&desktop.item, &StatusItem::quitRequested);
    const std::array<QSignalSpy*, 3> spies = {&open, &check, &quit};
    for (int id = 1; id <= 3; ++id) {
        desktop.askMenu("AboutToShow", {0});
        desktop.askMenu("Event", {0, QStringLiteral("opened"), QVariant::fromValue(QDBusVariant(0)), 0U});
        desktop.askMenu("Event", {id, QStringLiteral("hovered"), QVariant::fromValue(QDBusVariant(0)), 0U});
        EXPECT_TRUE(spies.at(size_t(id - 1))->isEmpty()) << id;
        desktop.askMenu("Event", {id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
        EXPECT_EQ(spies.at(size_t(id - 1))->size(), 1) << id;
    }
}

TEST(StatusItemMenu, ClicksInAGroupArePassedOnAndUnknownEntriesNamed) {
    const Desktop desktop;
    QSignalSpy quit(&desktop.item, &StatusItem::quitRequested);
    const QList<DBusMenuEvent> events = {{99, QStringLiteral("clicked"), QDBusVariant(0), 0},
                                         {3, QStringLiteral("clicked"), QDBusVariant(0), 0}};
    const QDBusMessage answer = desktop.askMenu("EventGroup", {QVariant::fromValue(events)});
    EXPECT_EQ(qdbus_cast<QList<int>>(answer.arguments().value(0)), QList<int>{99});
    EXPECT_EQ(quit.size(), 1);
}

TEST(StatusItemMenu, ShowsOffWhileNoCheckForUpdatesCanStart) {
    Desktop desktop;
    const SignalCounter updated(desktop.tray.bus(), kMenuInterface, QStringLiteral("ItemsPropertiesUpdated"));
    QSignalSpy check(&desktop.item, &StatusItem::checkForUpdatesRequested);
    desktop.item.setCanCheckForUpdates(false);
    ASSERT_TRUE(eventually([&] { return updated.messages().size() == 1; }));
    EXPECT_EQ(updated.messages()[0].signature(), QStringLiteral("a(ia{sv})a(ias)"));
    EXPECT_EQ(entries(layout(desktop, 0, -1))[1], "2 Check for Updates\u2026 (off)");
    desktop.askMenu("Event", {2, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_TRUE(check.isEmpty());
    desktop.item.setCanCheckForUpdates(true);
    EXPECT_TRUE(eventually([&] { return updated.messages().size() == 2; }));
    EXPECT_EQ(entries(layout(desktop, 0, -1))[1], "2 Check for Updates\u2026");
}

TEST(StatusItemMenu, RefusesMoreThanAHostHasReasonToSend) {
    const Desktop desktop;
    QSignalSpy open(&desktop.item, &StatusItem::openRequested);
    const QStringList names(1001, QStringLiteral("label"));
    const QList<int> ids(1001, 1);
    const QList<DBusMenuEvent> events(1001, {1, QStringLiteral("clicked"), QDBusVariant(0), 0});
    const QString longEvent(1025, QLatin1Char('x'));
    const std::vector<std::pair<const char*, QVariantList>> calls = {
        {"GetLayout", {0, -1, names}},
        {"GetGroupProperties", {QVariant::fromValue(ids), QStringList()}},
        {"GetGroupProperties", {QVariant::fromValue(QList<int>()), names}},
        {"GetProperty", {1, QString(1 << 24, QLatin1Char('x'))}},
        {"Event", {1, longEvent, QVariant::fromValue(QDBusVariant(0)), 0U}},
        {"EventGroup", {QVariant::fromValue(events)}},
        {"AboutToShowGroup", {QVariant::fromValue(ids)}},
    };
    for (const auto& [method, arguments] : calls)
        EXPECT_EQ(desktop.askMenu(method, arguments).type(), QDBusMessage::ErrorMessage) << method;
    EXPECT_TRUE(open.isEmpty());
    const QDBusMessage most =
        desktop.askMenu("GetGroupProperties", {QVariant::fromValue(ids.first(1000)), names.first(1000)});
    EXPECT_EQ(most.type(), QDBusMessage::ReplyMessage);
}

TEST(StatusItemMenu, RefusesUnknownEntries) {
    const Desktop desktop;
    const std::vector<std::pair<const char*, QVariantList>> calls = {
        {"GetLayout", {99, -1, QStringList()}},
        {"GetProperty", {99, QStringLiteral("label")}},
        {"GetProperty", {1, QStringLiteral("no-such-property")}},
        {"Event", {99, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U}},
        {"AboutToShow", {-1}},
    };
    for (const auto& [method, arguments] : calls)
        EXPECT_EQ(desktop.askMenu(method, arguments).type(), QDBusMessage::ErrorMessage) << method;
    const QDBusMessage group = desktop.askMenu("AboutToShowGroup", {QVariant::fromValue(QList<int>{0, 99})});
    EXPECT_EQ(qdbus_cast<QList<int>>(group.arguments().value(1)), QList<int>{99});
}

// The rest needs an XEmbed tray: trayer, at the top right.

/// Presses a pointer button in the middle of the tray, which holds only our icon.
void clickTheTray(int button) {
    const QString script = QStringLiteral(
        "eval $(xdotool search --onlyvisible --class trayer getwindowgeometry --shell) && "
        "xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2)) click %1");
    EXPECT_EQ(QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), script.arg(button)}), 0);
}

/// The widget of the XEmbed icon, once the tray has taken it in.
QWidget* xembedWidget() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->inherits("QSystemTrayIconSys") && widget->isVisible()) return widget;
    return nullptr;
}

bool trayHoldsTheIcon() {
    const QWidget* widget = xembedWidget();
    return widget != nullptr && widget->mapToGlobal(QPoint(0, 0)).x() > 1000;
}

TEST(XEmbedIcon, IsShownWhereThereIsNoWatcher) {
    const StatusItem item(QDBusConnection::sessionBus());
    EXPECT_TRUE(eventually([&] { return item.isShown() && trayHoldsTheIcon(); }));
}

/// Has the tray announce the colour of its icons, as window managers' bars do, or announce none.
void setTrayColor(const std::optional<QColor>& color) {
    xcb_connection_t* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const auto atom = [&](std::string_view name) {
        const auto cookie = xcb_intern_atom(x11, 0, std::uint16_t(name.size()), name.data());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(x11, cookie, nullptr), &std::free);
        return reply->atom;
    };
    const auto cookie = xcb_get_selection_owner(x11, atom("_NET_SYSTEM_TRAY_S0"));
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> tray(
        xcb_get_selection_owner_reply(x11, cookie, nullptr), &std::free);
    const xcb_atom_t property = atom("_NET_SYSTEM_TRAY_COLORS");
    if (color.has_value()) {
        std::array<std::uint32_t, 12> channels = {};
        for (size_t at = 0; at < channels.size(); at += 3) {
            channels[at] = std::uint32_t(color->red()) * 0x101;
            channels[at + 1] = std::uint32_t(color->green()) * 0x101;
            channels[at + 2] = std::uint32_t(color->blue()) * 0x101;
        }
        xcb_change_property(x11, XCB_PROP_MODE_REPLACE, tray->owner, property, XCB_ATOM_CARDINAL, 32, 12,
                            channels.data());
    } else {
        xcb_delete_property(x11, tray->owner, property);
    }
    xcb_flush(x11);
}

/// Whether the icon is painted in this colour.
bool isPainted(const QColor& color) {
    const QImage picture = xembedWidget() == nullptr ? QImage() : xembedWidget()->grab().toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) count += picture.pixelColor(x, y) == color ? 1 : 0;
    return count > 10;
}

TEST(XEmbedIcon, IsPaintedInTheColoursOfTheTray) {
    setTrayColor(QColor(240, 230, 140));
    const StatusItem item(QDBusConnection::sessionBus());
    EXPECT_TRUE(eventually([] { return isPainted(QColor(240, 230, 140)); }));
    setTrayColor(std::nullopt);
}

TEST(XEmbedIcon, FollowsTheColoursOfTheTray) {
    const StatusItem item(QDBusConnection::sessionBus());
    EXPECT_TRUE(eventually([] { return isPainted(QColor(StatusIcon::kColorForAnyTray)); }));
    setTrayColor(Qt::white);
    EXPECT_TRUE(eventually([] { return isPainted(Qt::white); }));
    setTrayColor(std::nullopt);
    EXPECT_TRUE(eventually([] { return isPainted(QColor(StatusIcon::kColorForAnyTray)); }));
}

TEST(XEmbedIcon, TellsWhereItIsWhenClicked) {
    const StatusItem item(QDBusConnection::sessionBus());
    ASSERT_TRUE(eventually(trayHoldsTheIcon));
    QSignalSpy activated(&item, &StatusItem::activated);
    clickTheTray(1);
    ASSERT_TRUE(eventually([&] { return activated.size() == 1; }));
    const QRect icon = activated[0][0].toRect();
    EXPECT_TRUE(QRect(1000, 0, 280, 30).contains(icon)) << icon.x() << "," << icon.y();
    EXPECT_GE(icon.width(), 16);
}

TEST(XEmbedIcon, ShowsTheMenuOnARightClick) {
    const StatusItem item(QDBusConnection::sessionBus());
    ASSERT_TRUE(eventually(trayHoldsTheIcon));
    clickTheTray(3);
    ASSERT_TRUE(eventually([] { return QApplication::activePopupWidget() != nullptr; }));
    QStringList texts;
    for (const QAction* action : QApplication::activePopupWidget()->actions()) texts.append(action->text());
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Open Ravlin"), QStringLiteral("Check for Updates\u2026"),
                                  QStringLiteral("Quit")}));
    QApplication::activePopupWidget()->close();
}

TEST(XEmbedIcon, IsDroppedWhenAWatcherComes) {
    const StatusItem item(QDBusConnection::sessionBus());
    ASSERT_TRUE(eventually(trayHoldsTheIcon));
    const FakeTray tray;
    EXPECT_TRUE(eventually([&] { return xembedWidget() == nullptr && item.isShown(); }));
    EXPECT_EQ(tray.registrations().size(), 1);
}

TEST(XEmbedIcon, DoesNotComeBackWhileAWatcherRestarts) {
    auto tray = std::make_unique<FakeTray>();
    const StatusItem item(QDBusConnection::sessionBus());
    ASSERT_TRUE(eventually([&] { return item.isShown(); }));
    tray.reset();
    ASSERT_TRUE(eventually([&] { return !item.isShown(); }));
    EXPECT_EQ(xembedWidget(), nullptr);
}

}  // namespace
}  // namespace ravlin::tests

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}

#include "StatusItemTest.moc"
