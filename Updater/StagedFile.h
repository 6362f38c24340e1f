#pragma once

#include "Updater/OpenedFolder.h"

#include <QByteArray>

#include <sys/types.h>

namespace ravlin {

/// A new file on its way to its place in a folder. Until it is wholly on the disk it has no name, where the file system
/// can do that; then it gets one that nobody can foresee, and takes the place of another file in one step. Unless it
/// came to that, nothing of it is left with this object's end.
///
/// A kill may leave the file under its name. That is how such a file is told from everything else in the folder: by
/// 128 random bits behind a prefix of ours, as a plain file of this user's that nobody works on; whoever makes one has
/// it locked, and a kill opens the lock.
class StagedFile {
public:
    /// `folder` must outlive the file.
    explicit StagedFile(const OpenedFolder& folder);
    Q_DISABLE_COPY_MOVE(StagedFile)
    ~StagedFile();

    /// Puts `contents` on the disk. As with `replace`, `errno` tells why not.
    bool write(const QByteArray& contents, mode_t mode) const;

    /// Makes it the folder's file of this name.
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
