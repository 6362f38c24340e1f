#include "App/Launch.h"

#include "Platform/Desktop/DBusLimits.h"
#include "Platform/Desktop/LaunchFeedback.h"

namespace ravlin {

Launch Launch::of(const QString& activationToken, const QByteArray& startupId) {
    return {DBusLimits::accept(activationToken),
            startupId.size() <= LaunchFeedback::kMaxIdSize ? startupId : QByteArray()};
}

Launch Launch::fromEnvironment() {
    return of(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), qgetenv("DESKTOP_STARTUP_ID"));
}

}  // namespace ravlin
