#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace ravlin {

/// The end of a desktop session, Ctrl+C and kill, as a Qt signal: SIGTERM, SIGINT and SIGHUP. One object at a time.
class QuitSignals final : public QObject {
    Q_OBJECT

public:
    /// From here on the three signals no longer end the program themselves.
    QuitSignals();
    ~QuitSignals() override;

Q_SIGNALS:
    void received();

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace ravlin
