#include "Updater/OpenedFolder.h"

#include <QFile>

#include <array>
#include <cstring>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace ravlin {
namespace {

/// For one entry of the system's lists of users and groups. A group with more members than fit is not a user's own.
using Buffer = std::array<char, 1 << 16>;

bool hasOnlyMember(const group& listed, const char* user) {
    for (char* const* member = listed.gr_mem; *member != nullptr; ++member)
        if (std::strcmp(*member, user) != 0) return false;
    return true;
}

bool isAnotherUsersGroup(gid_t id, uid_t user) {
    Buffer buffer{};
    passwd entry{};
    passwd* found = nullptr;
    bool isFound = false;
    setpwent();
    while (!isFound && getpwent_r(&entry, buffer.data(), buffer.size(), &found) == 0)
        isFound = entry.pw_gid == id && entry.pw_uid != user;
    endpwent();
    return isFound;
}

/// Many systems give each user a group of the same name and let it write to the user's files. Where users come from a
/// network not all of them may be listed, but there the name says enough.
bool isOwnGroup(gid_t id) {
    const uid_t user = geteuid();
    Buffer userBuffer{};
    Buffer groupBuffer{};
    passwd userEntry{};
    group groupEntry{};
    passwd* foundUser = nullptr;
    group* foundGroup = nullptr;
    getpwuid_r(user, &userEntry, userBuffer.data(), userBuffer.size(), &foundUser);
    getgrgid_r(id, &groupEntry, groupBuffer.data(), groupBuffer.size(), &foundGroup);
    if (foundUser == nullptr || foundGroup == nullptr || userEntry.pw_gid != id) return false;
    return std::strcmp(groupEntry.gr_name, userEntry.pw_name) == 0 && hasOnlyMember(groupEntry, userEntry.pw_name) &&
           !isAnotherUsersGroup(id, user);
}

/// In a folder with a list of users who have rights of their own, the group's bits are the most that any of them has.
bool hasAccessList(int descriptor) {
    return fgetxattr(descriptor, "system.posix_acl_access", nullptr, 0) > 0;
}

}  // namespace

std::optional<OpenedFolder> OpenedFolder::open(const QString& path) {
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) return std::nullopt;
    return OpenedFolder(descriptor);
}

OpenedFolder::OpenedFolder(OpenedFolder&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

OpenedFolder::~OpenedFolder() {
    if (descriptor_ >= 0) close(descriptor_);
}

bool OpenedFolder::isWritable() const {
    return faccessat(descriptor_, ".", W_OK | X_OK, AT_EACCESS) == 0;
}

bool OpenedFolder::isShared() const {
    struct stat status {};
    if (fstat(descriptor_, &status) != 0) return true;
    if (status.st_uid != 0 && status.st_uid != geteuid()) return true;
    if ((status.st_mode & S_IWOTH) != 0) return true;
    return (status.st_mode & S_IWGRP) != 0 && (hasAccessList(descriptor_) || !isOwnGroup(status.st_gid));
}

std::optional<struct stat> OpenedFolder::status(const QByteArray& name) const {
    struct stat status {};
    if (fstatat(descriptor_, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
    return status;
}

std::vector<QByteArray> OpenedFolder::names(const QByteArray& prefix) const {
    const int own = openat(descriptor_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);  // the listing closes it
    const auto end = [](DIR* listing) { closedir(listing); };
    const std::unique_ptr<DIR, decltype(end)> listing(own < 0 ? nullptr : fdopendir(own));
    std::vector<QByteArray> found;
    if (listing == nullptr) return found;
    while (const dirent* const entry = readdir(listing.get())) {
        const QByteArray name(static_cast<const char*>(entry->d_name));
        if (name.startsWith(prefix)) found.push_back(name);
    }
    return found;
}

}  // namespace ravlin
