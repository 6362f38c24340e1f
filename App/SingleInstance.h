#pragma once

#include "App/Launch.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <cstdint>

namespace ravlin {

/// This program's name on the session bus, which only one process can hold, and the interface behind it through which
/// desktops and later starts ask for the panel: `org.freedesktop.Application`, which defines the methods.
class SingleInstance final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Role : std::uint8_t {
        first,   // this process is the program, with or without a session bus
        second,  // another one is, and has been asked to show its panel
        silent,  // another one is, but does not answer: it has been stopped, or is busy and will show its panel later
    };

    SingleInstance();
    ~SingleInstance() override;

    /// Takes the name, or hands `launch` over to the process that has it. Needs no application object, so that a second
    /// start ends without ever connecting to the display.
    Role claim(const Launch& launch);

    /// The session bus; not connected if there is none.
    const QDBusConnection& bus() const { return bus_; }

    Q_SLOT Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SLOT Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SLOT Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameter,
                                            const QVariantMap& platformData);

Q_SIGNALS:
    /// The desktop or a later start wants the panel.
    void activated(const ravlin::Launch& launch);

private:
    bool takeName();
    bool activateOther(const Launch& launch);

    QDBusConnection bus_;
};

}  // namespace ravlin
