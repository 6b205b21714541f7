#include "filters/SuppressionFilter.h"

#include <bit>

namespace tallyhorn {
namespace {

/// Calls `visit` for each field in the order of the file.  Encoding and decoding both use it.
template <class Filter, class Visitor>
void VisitFields(Filter& filter, Visitor&& visit) {
    visit(filter.FilterName);
    visit(filter.UseDateRange);
    visit(filter.BeginDate);
    visit(filter.EndDate);
    visit(filter.EventTypes);
    visit(filter.Source);
    visit(filter.Category);
    visit(filter.AccountName);
    visit(filter.Computer);
    visit(filter.EventID);
}

/// Writes fields one after the other; numbers are little-endian on every machine.
class Encoder {
public:
    explicit Encoder(char* to) : to_(to) {}

    template <std::size_t Size>
    void operator()(const FixedText<Size>& text) {
        to_ = std::copy_n(text.View().data(), Size, to_);
    }
    void operator()(std::int16_t value) { Put(static_cast<std::uint16_t>(value), sizeof value); }
    void operator()(std::int32_t value) { Put(static_cast<std::uint32_t>(value), sizeof value); }
    void operator()(double value) { Put(std::bit_cast<std::uint64_t>(value), sizeof value); }

private:
    void Put(std::uint64_t value, std::size_t bytes) {
        for (std::size_t i = 0; i < bytes; ++i)
            *to_++ = static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
    }

    char* to_;
};

class Decoder {
public:
    explicit Decoder(const char* from) : from_(from) {}

    template <std::size_t Size>
    void operator()(FixedText<Size>& text) {
        text = std::string_view(from_, Size);
        from_ += Size;
    }
    void operator()(std::int16_t& value) { value = static_cast<std::int16_t>(Take(sizeof value)); }
    void operator()(std::int32_t& value) { value = static_cast<std::int32_t>(Take(sizeof value)); }
    void operator()(double& value) { value = std::bit_cast<double>(Take(sizeof value)); }

private:
    std::uint64_t Take(std::size_t bytes) {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            value |= std::uint64_t{static_cast<unsigned char>(*from_++)} << (8 * i);
        return value;
    }

    const char* from_;
};

}  // namespace

FilterRecord EncodeFilter(const SuppressionFilter& filter) {
    FilterRecord record{};
    VisitFields(filter, Encoder(record.data()));
    return record;
}

SuppressionFilter DecodeFilter(std::span<const char, FilterDataSize> data) {
    SuppressionFilter filter;
    VisitFields(filter, Decoder(data.data()));
    return filter;
}

}  // namespace tallyhorn
