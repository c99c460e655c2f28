// Property streams: every stream that can be read is written as one that reads the same. The input is the stream
// itself.
#include <span>

#include "common/property_stream.h"
#include "fuzz/fuzz_input.h"

void qvx::CheckInput(FuzzInput& input) {
    using namespace property_stream;
    const Bytes bytes = input.RestBytes();
    if (bytes.size() < headerSize) return;
    const auto header = ReadHeader(std::span(bytes).first(headerSize));
    if (!header) return;
    const auto records = ReadRecords(*header, std::span(bytes).subspan(headerSize));
    if (!records) return;
    Require(records->size() == header->count, "as many records as were promised");
    const Bytes written = Write(*records);
    const auto again = ReadHeader(written);
    Require(again.has_value(), "what was read is written as a stream");
    const auto reread = ReadRecords(*again, std::span(written).subspan(headerSize));
    Require(reread == records, "which reads the same");
}
