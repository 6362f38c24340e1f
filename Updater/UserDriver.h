#pragma once

namespace ravlin {

/// The update component's only way to the user: every window it shows goes through here. Views/UpdateWindows implements
/// it; tests have a recorder.
class UserDriver {
public:
    UserDriver() = default;
    UserDriver(const UserDriver&) = delete;
    UserDriver& operator=(const UserDriver&) = delete;
    UserDriver(UserDriver&&) = delete;
    UserDriver& operator=(UserDriver&&) = delete;
    virtual ~UserDriver() = default;

    /// Tells that this copy is updated by the system's own software updater. Called again while the window is open, the
    /// window comes to the front.
    virtual void showUpdatesComeWithSystem() = 0;
};

}  // namespace ravlin
