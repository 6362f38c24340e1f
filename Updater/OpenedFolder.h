#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

#include <sys/stat.h>

namespace ravlin {

/// A folder that is opened once: everything learnt about it and done in it concerns that same folder, wherever its path
/// may lead a moment later. Names are those of its entries, and links are not followed.
class OpenedFolder {
public:
    static std::optional<OpenedFolder> open(const QString& path);
    OpenedFolder(const OpenedFolder&) = delete;
    OpenedFolder& operator=(const OpenedFolder&) = delete;
    OpenedFolder(OpenedFolder&& other) noexcept;
    OpenedFolder& operator=(OpenedFolder&&) = delete;
    ~OpenedFolder();

    int descriptor() const { return descriptor_; }

    /// Whether this user may put files into it.
    bool isWritable() const;

    /// Whether other users may, so that nothing in it can be relied on: everyone, a group, or its owner. A group with
    /// only this user in it does not count, and neither does the administrator, who may write everywhere.
    bool isShared() const;

    /// What is known about an entry; nothing if there is none.
    std::optional<struct stat> status(const QByteArray& name) const;

    /// The names that begin with `prefix`.
    std::vector<QByteArray> names(const QByteArray& prefix) const;

private:
    explicit OpenedFolder(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

}  // namespace ravlin
