#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/OfferedText.h"
#include "Platform/Clipboard/TransferQueue.h"
#include "Platform/Clipboard/Wayland/PipeWriter.h"
#include "Platform/Clipboard/Wayland/WaylandConnection.h"

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace ravlin {

/// Writes our text into the pipes of the programs that read it, of many at once and each at its own pace. The
/// connection's descriptor tells when there is something to do.
class WaylandTransfers {
public:
    /// `limit`: how long a program that reads may take nothing.
    WaylandTransfers(const WaylandConnection& connection, std::chrono::milliseconds limit)
        : connection_(connection), transfers_(limit) {}

    /// Writes as much of the text as the pipe takes now; the rest follows. Takes ownership of `descriptor`.
    void begin(int descriptor, OfferedText::Bytes text);

    /// Goes on with the programs that have taken something, and drops those that have taken nothing for too long.
    void proceed();

    /// When `proceed` will have somebody to drop; nothing if nobody reads.
    std::optional<WaylandConnection::TimePoint> nextDeadline() const { return transfers_.nextDeadline(); }

    std::vector<int> descriptors() const { return transfers_.keys(); }
    void clear() { transfers_.clear(); }

private:
    struct Transfer : NonCopyable {
        Transfer(const WaylandConnection& watching, PipeWriter what) : connection(watching), writer(std::move(what)) {
            connection.watchWritable(writer.descriptor());
        }
        ~Transfer() { connection.unwatch(writer.descriptor()); }
        const WaylandConnection& connection;
        PipeWriter writer;
    };

    const WaylandConnection& connection_;
    TransferQueue<int, Transfer> transfers_;
};

}  // namespace ravlin
