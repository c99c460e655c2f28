#include "controls/textedit/text_normalisation.h"

#include "common/number_text.h"
#include "common/numeric_reading.h"
#include "common/run_time_error.h"

namespace qvx::textedit {
namespace {

void CheckPlaces(std::int16_t decimalPlaces) {
    if (decimalPlaces < 0) throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
}

}  // namespace

Text NormalisedText(TextView text, std::int32_t dataType, std::int16_t decimalPlaces) {
    switch (dataType) {
        case data_type::numerics:
            CheckPlaces(decimalPlaces);
            return FormatFixed(NumericValue(text), decimalPlaces);
        case data_type::digits:
            return DoubleToText(NumericValue(text));
        default:
            return Text(text);
    }
}

Text NormalisedInPlace(TextView text, std::int32_t dataType, std::int16_t decimalPlaces) {
    if (dataType != data_type::none) CheckPlaces(decimalPlaces);
    return NormalisedText(text, dataType, decimalPlaces);
}

}  // namespace qvx::textedit
