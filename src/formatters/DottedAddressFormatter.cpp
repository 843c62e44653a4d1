#include "formatters/DottedAddressFormatter.h"

namespace corvane::formatters {

DottedAddressFormatter::DottedAddressFormatter(Needs& needs)
    : ValidCharacterFormatter(needs),
      _validCharacterSet(std::make_shared<const util::CharacterSet>(
          util::CharacterSet::decimalDigits().unitedWith(util::CharacterSet::charactersOf(".")))) {}

} // namespace corvane::formatters
