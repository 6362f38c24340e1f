#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace ravlin {

/// The end of a desktop session, Ctrl+C and kill, as a Qt signal: SIGTERM, SIGINT and SIGHUP. Only one object at a
/// time.
class QuitSignals final : public QObject {
    Q_OBJECT

public:
    /// From now on the three signals no longer end the program by themselves.
    QuitSignals();
    ~QuitSignals() override;

Q_SIGNALS:
    void received();

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace ravlin
