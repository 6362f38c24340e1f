#pragma once

#include "Updater/OpenedFolder.h"

#include <QByteArray>

#include <sys/types.h>

namespace ravlin {

/// A new file on its way to its place in a folder. Until it is completely on the disk it has no name, if the file
/// system allows that; then it gets an unpredictable one, and takes the place of another file in one step. If that does
/// not happen, nothing of it is left after this object's end.
///
/// A kill may leave the file under its name. What distinguishes such a file from everything else in the folder: 128
/// random bits after our prefix, and that it is a plain file of this user's that no process is working on; whoever
/// makes one holds a lock on it, which a kill releases.
class StagedFile {
public:
    /// `folder` must outlive the file.
    explicit StagedFile(const OpenedFolder& folder);
    Q_DISABLE_COPY_MOVE(StagedFile)
    ~StagedFile();

    /// Puts `contents` on the disk. As with `replace`, `errno` says why not.
    bool write(const QByteArray& contents, mode_t mode) const;

    /// Makes it the folder's file of that name.
    bool replace(const QByteArray& name);

    /// Removes what kills have left in `folder`.
    static void removeRemains(const OpenedFolder& folder);

private:
    void open();
    bool isNamed() const { return !name_.isEmpty(); }

    const OpenedFolder& folder_;
    int descriptor_ = -1;
    QByteArray name_;
};

}  // namespace ravlin
