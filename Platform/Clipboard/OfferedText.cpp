#include "Platform/Clipboard/OfferedText.h"

#include "Engine/Support/Characters/Unicode.h"
#include "Platform/Clipboard/Latin1.h"

namespace ravlin {

bool OfferedText::isOfferedIn(const TextFormat& format) const {
    if (format.type != TextFormats::Type::string) return false;
    if (format.encoding != TextFormats::Encoding::latin1) return true;
    if (!fitsLatin1_) fitsLatin1_ = Latin1::canHold(*text_);
    return *fitsLatin1_;
}

OfferedText::Bytes OfferedText::bytesIn(const TextFormat& format) const {
    return format.encoding == TextFormats::Encoding::latin1 ? latin1() : text_;
}

OfferedText::Bytes OfferedText::latin1() const {
    if (latin1_ == nullptr) {
        const bool isASCII = Unicode::asciiRunEnd(*text_, 0) == text_->size();
        latin1_ = isASCII ? text_ : std::make_shared<const std::string>(Latin1::fromUTF8(*text_).value_or(""));
    }
    return latin1_;
}

}  // namespace ravlin
