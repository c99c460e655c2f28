// Where the values of a control's properties are kept between sessions: property bags and streams. Nothing here knows a
// control; kit/property_table.h has the properties.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "common/property_stream.h"
#include "kit/property_table.h"

namespace qvx {

using StoredValues = std::vector<property_stream::Record>;

// Reads each property from a bag. Throws std::bad_alloc when the bag runs out of memory: a default that replaced a
// stored value would later be saved over it. The bag and the log (may be null) must outlive the source.
PropertySource ReadBag(IPropertyBag* bag, IErrorLog* log);
// Throws ComError when the bag refuses a value.
void WriteBag(IPropertyBag* bag, const StoredValues& values);

// What a control has written into a stream, its size included: a stream has no container beside it that keeps the size.
class StreamContents {
  public:
    // Reads the whole of it. Throws ComError when it is damaged or ends early.
    explicit StreamContents(IStream* stream);

    // The control's size in 1/100 millimetre; nothing where the stream has none that a device could show.
    std::optional<SIZEL> Extent() const;
    // Must not outlive this object.
    PropertySource Source() const;

  private:
    const PropertyValue* Find(TextView key) const;

    StoredValues values_;
};

// The bytes that StreamContents reads.
std::vector<std::uint8_t> StreamBytes(const SIZEL& extent, StoredValues values);
// Throws ComError when the stream takes no more.
void WriteStream(IStream* stream, const std::vector<std::uint8_t>& bytes);

}  // namespace qvx
