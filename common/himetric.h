// Controls and containers exchange extents in hundredths of a millimetre.
#pragma once

namespace qvx {

constexpr int himetricPerInch = 2540;

}  // namespace qvx
