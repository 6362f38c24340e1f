#include "Platform/Clipboard/Wayland/WaylandTransfers.h"

namespace ravlin {

void WaylandTransfers::begin(int descriptor, OfferedText::Bytes text) {
    PipeWriter writer(descriptor, std::move(text));
    if (writer.proceed() == PipeWriter::Progress::finished) return;
    const int key = writer.descriptor();
    transfers_.add(key, connection_, std::move(writer));
}

void WaylandTransfers::proceed() {
    if (!transfers_.nextDeadline()) return;
    for (const int descriptor : connection_.writable()) {
        Transfer* const transfer = transfers_.find(descriptor);
        if (transfer == nullptr) continue;
        switch (transfer->writer.proceed()) {
            case PipeWriter::Progress::none: break;
            case PipeWriter::Progress::some: transfers_.noteStep(descriptor); break;
            case PipeWriter::Progress::finished: transfers_.remove(descriptor); break;
        }
    }
    transfers_.removeStalled();
}

}  // namespace ravlin
