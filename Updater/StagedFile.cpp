#include "Updater/StagedFile.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace ravlin {
namespace {

constexpr const char* kPrefix = ".ravlin-update-";
constexpr mode_t kOnlyOurs = S_IRUSR | S_IWUSR;

using RandomBits = std::array<quint32, 4>;
constexpr qsizetype kDigits = sizeof(RandomBits) * 2;  // hexadecimal

QByteArray randomName() {
    RandomBits bits{};
    QRandomGenerator::system()->generate(bits.begin(), bits.end());
    return kPrefix + QByteArray(reinterpret_cast<const char*>(bits.data()), sizeof(bits)).toHex();
}

bool isRandomName(const QByteArray& name) {
    const QByteArray digits = name.mid(QByteArrayView(kPrefix).size());
    const auto isDigit = [](char digit) { return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f'); };
    return name.startsWith(kPrefix) && digits.size() == kDigits && std::ranges::all_of(digits, isDigit);
}

bool isPlainFileOfOurs(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_nlink == 1;
}

/// Locks a file unless another process has. Some file systems have no locks; there none has.
bool lock(int descriptor) {
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

void removeRemain(const OpenedFolder& folder, const QByteArray& name) {
    const int descriptor =
        openat(folder.descriptor(), name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return;
    struct stat status {};
    const bool isRemain = fstat(descriptor, &status) == 0 && isPlainFileOfOurs(status) && lock(descriptor);
    if (isRemain) unlinkat(folder.descriptor(), name.constData(), 0);
    close(descriptor);
}

}  // namespace

StagedFile::StagedFile(const OpenedFolder& folder) : folder_(folder) {
    open();
}

StagedFile::~StagedFile() {
    if (isNamed()) unlinkat(folder_.descriptor(), name_.constData(), 0);
    if (descriptor_ >= 0) close(descriptor_);
}

void StagedFile::open() {
    descriptor_ = openat(folder_.descriptor(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, kOnlyOurs);
    if (descriptor_ < 0) {
        // Not every file system has files without a name.
        const QByteArray name = randomName();
        descriptor_ = openat(folder_.descriptor(), name.constData(),
                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOnlyOurs);
        if (descriptor_ >= 0) name_ = name;
    }
    if (descriptor_ >= 0) lock(descriptor_);
}

bool StagedFile::write(const QByteArray& contents, mode_t mode) const {
    if (descriptor_ < 0) return false;
    for (qsizetype written = 0; written < contents.size();) {
        const ssize_t count =
            ::write(descriptor_, contents.constData() + written, static_cast<std::size_t>(contents.size() - written));
        if (count < 0 && errno != EINTR) return false;
        written += std::max<ssize_t>(count, 0);
    }
    return fchmod(descriptor_, mode) == 0 && fdatasync(descriptor_) == 0;
}

bool StagedFile::replace(const QByteArray& name) {
    if (!isNamed()) {
        const QByteArray own = "/proc/self/fd/" + QByteArray::number(descriptor_);
        const QByteArray staged = randomName();
        if (linkat(AT_FDCWD, own.constData(), folder_.descriptor(), staged.constData(), AT_SYMLINK_FOLLOW) != 0)
            return false;
        name_ = staged;
    }
    if (renameat(folder_.descriptor(), name_.constData(), folder_.descriptor(), name.constData()) != 0) return false;
    name_.clear();
    return true;
}

void StagedFile::removeRemains(const OpenedFolder& folder) {
    for (const QByteArray& name : folder.names(kPrefix))
        if (isRandomName(name)) removeRemain(folder, name);
}

}  // namespace ravlin
