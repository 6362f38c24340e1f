// The packager's update settings, with its keys: whatever is in the file, the settings are usable or name a problem.

#include "Updater/Address.h"
#include "Updater/UpdateSettings.h"
#include "fuzz/Fuzz.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

using ravlin::InstallKind;
using ravlin::UpdateSettings;
using ravlin::Fuzz::expect;

void checkFeedSettings(const UpdateSettings& settings) {
    expect(ravlin::Address::isSafe(settings.feed), "a feed comes from a safe address");
    expect(!settings.keys.empty(), "a feed has a key");
    for (const ravlin::PublicKey& key : settings.keys) {
        const QByteArrayView bytes(key.data(), static_cast<qsizetype>(key.size()));
        expect(ravlin::Signature::parsePublicKey(bytes.toByteArray().toBase64()) == key, "a key is one");
    }
    expect(settings.interval >= UpdateSettings::kShortestInterval, "nobody is asked all the time");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const QTemporaryDir folder;
    static qulonglong inputs = 0;
    // Each in its own file, since Qt remembers those that it has read.
    QFile file(folder.filePath(QString::number(++inputs)));
    expect(file.open(QIODevice::WriteOnly), "there is room for a file");
    file.write(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    file.close();
    const UpdateSettings settings = UpdateSettings::read(file.fileName());
    file.remove();
    if (settings.problem.isEmpty() && settings.kind == InstallKind::appimage) checkFeedSettings(settings);
    if (settings.kind == InstallKind::system) expect(settings.keys.empty(), "a system copy has no feed");
    return 0;
}
