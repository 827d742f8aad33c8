#include "tools/Bytes.h"

#include <algorithm>
#include <limits>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/Text.h"

namespace zel {

namespace {

// Values of characters that are no digits.
constexpr std::uint8_t kPad = 64;
constexpr std::uint8_t kPassedOver = 254;
constexpr std::uint8_t kNoDigit = 255;

/// The values of all characters of an encoding.
using Values = std::array<std::uint8_t, 256>;

constexpr Values ValuesOf(std::string_view digits, std::string_view passedOver) {
  Values values{};
  values.fill(kNoDigit);
  for (std::size_t value = 0; value < digits.size(); ++value) {
    values[static_cast<unsigned char>(digits[value])] = static_cast<std::uint8_t>(value);
  }
  for (const char character : passedOver) {
    values[static_cast<unsigned char>(character)] = kPassedOver;
  }
  return values;
}

constexpr Values kBase64Values = [] {
  Values values = ValuesOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/", "\r\n");
  values['='] = kPad;
  return values;
}();

constexpr Values kHexValues = [] {
  Values values = ValuesOf("0123456789ABCDEF", "- \r\n");
  for (std::uint8_t value = 10; value < 16; ++value) {
    values['a' + value - 10U] = value;
  }
  return values;
}();

const Values& ValuesOf(Encoding encoding) {
  return encoding == Encoding::Base64 ? kBase64Values : kHexValues;
}

std::size_t DigitsPerGroup(Encoding encoding) { return encoding == Encoding::Base64 ? 4 : 2; }

/// How many UTF-16 code units it is, in which the library counts.
std::size_t UnitsOf(const Character& character) {
  return character.isWellFormed && character.bytes.size() == 4 ? 2 : 1;
}

/// The library's message on a short text.
Fault LibraryFault(Encoding encoding, std::string_view text) {
  VnZEL10cmn::clsHelper01 helper;
  VnZEL10cmn::ByteArray bytes;
  const bool isHex = encoding == Encoding::Hexadecimal;
  static_cast<void>(isHex ? helper.GetBytesOfBinStr(text, bytes) : helper.FromBase64String(text, bytes));
  Fault fault;
  fault.unit = "character";
  fault.number = helper.ErrorObject().ErrorNr();
  fault.reason = LibraryMessage(helper.ErrorObject().ErrorMsg());
  return fault;
}

/// The library's message on a character that it refuses, which counts as the one at `place` from 1. The short text in
/// which the library is shown that character has it in the second place.
Fault RefusedCharacter(Encoding encoding, std::string_view character, std::int64_t place) {
  const std::size_t length = 1 + UnitsOf(FirstCharacter(character));
  const std::string_view filler = encoding == Encoding::Base64 ? "AAAA" : "0000";
  const std::size_t group = DigitsPerGroup(encoding);
  std::string text(filler.substr(0, 1));
  text += character;
  text += filler.substr(0, (group - length % group) % group);
  Fault fault = LibraryFault(encoding, text);
  constexpr std::string_view kLabel = "Zeichenposition: ";
  if (const std::size_t label = fault.reason.find(kLabel); label != std::string::npos) {
    fault.reason.replace(label + kLabel.size(), 1, std::to_string(place));
  }
  return fault;
}

}  // namespace

void MemoryBytes::Read(std::int32_t position, std::span<std::uint8_t> out) {
  std::ranges::copy(bytes_.subspan(static_cast<std::size_t>(position), out.size()), out.begin());
}

/// What one look at all characters of a text tells.
struct EncodedBytes::Survey {
  std::int64_t units = 0;          ///< characters that count, in UTF-16 code units
  std::size_t soundDigits = 0;     ///< digits before the first character that is none
  std::size_t soundEnd = 0;        ///< where that character stands
  std::size_t soundGroupsEnd = 0;  ///< where the last whole group of these digits ends
  bool isSound = true;
  std::int64_t refusedAt = -1;  ///< unit number of the first character that is refused, from 0
  std::string refused;
  std::int64_t leadingPadAt = -1;  ///< the same of the first pad that leads a group
  unsigned pads = 0;               ///< at the end

  Survey(std::string_view text, Encoding encoding) {
    const Values& values = ValuesOf(encoding);
    for (std::size_t offset = 0; offset < text.size();) {
      const std::uint8_t value = values[static_cast<unsigned char>(text[offset])];
      if (value == kPassedOver) {
        ++offset;
      } else if (value < kPad) {
        Count(encoding, ++offset);
      } else {
        Stop(text, offset, values);
      }
    }
    if (isSound) soundEnd = text.size();
  }

 private:
  void Count(Encoding encoding, std::size_t behind) {
    ++units;
    pads = 0;
    if (isSound && ++soundDigits % DigitsPerGroup(encoding) == 0) soundGroupsEnd = behind;
  }

  void Stop(std::string_view text, std::size_t& offset, const Values& values) {
    if (isSound) soundEnd = offset;
    isSound = false;
    if (values[static_cast<unsigned char>(text[offset])] == kPad) {
      if (units % 4 == 0 && leadingPadAt == -1) leadingPadAt = units;
      ++units;
      ++pads;
      ++offset;
      return;
    }
    // The library sees a character without what it passes over, be that between the character's bytes.
    std::string bytes;
    std::array<std::size_t, 5> behind{};
    for (std::size_t at = offset; at < text.size() && bytes.size() < 4; ++at) {
      if (values[static_cast<unsigned char>(text[at])] == kPassedOver) continue;
      bytes += text[at];
      behind[bytes.size()] = at + 1;
    }
    const Character character = FirstCharacter(bytes);
    if (refusedAt == -1) {
      refusedAt = units;
      refused = character.bytes;
    }
    units += static_cast<std::int64_t>(UnitsOf(character));
    pads = 0;
    offset = behind[character.bytes.size()];
  }
};

EncodedBytes::EncodedBytes(std::string_view text, Encoding encoding) : encoding_(encoding) {
  // Blanks around Base64 don't count, those inside do.
  const std::string_view blanks = encoding == Encoding::Base64 ? " \r\n" : "";
  const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
  text_ = text.substr(first, text.find_last_not_of(blanks) + 1 - first);
  const Survey survey(text_, encoding);
  const auto group = static_cast<std::int64_t>(DigitsPerGroup(encoding));
  if (encoding == Encoding::Base64 && survey.units == 0) {
    fault_ = LibraryFault(encoding, "");
  } else if (survey.units % group != 0) {
    fault_ = LibraryFault(encoding, encoding == Encoding::Base64 ? "A" : "0");
  } else if (survey.refusedAt != -1 &&
             (survey.leadingPadAt == -1 || survey.refusedAt / group <= survey.leadingPadAt / group)) {
    fault_ = RefusedCharacter(encoding, survey.refused, survey.refusedAt + 1);
  } else if (survey.leadingPadAt != -1) {
    fault_ = LibraryFault(encoding, "=AAA");
  }
  end_ = fault_ ? survey.soundGroupsEnd : text_.size();
  if (fault_) fault_->position = static_cast<std::int64_t>(first + survey.soundEnd);
  SetMarks();
  if (!fault_ && encoding == Encoding::Base64) {
    // Pads inside leave bytes out; there is room for them at the end all the same.
    size_ = static_cast<std::int32_t>(survey.units / 4 * 3 - std::min(survey.pads, 2U));
  }
}

void EncodedBytes::SetMarks() {
  constexpr std::int32_t kDistance = 32768;
  std::size_t offset = 0;
  for (std::int32_t next = 0;;) {
    if (decoded_ >= next) {
      marks_.push_back({decoded_, offset});
      next += kDistance;
    }
    const Group group = NextGroup(offset);
    if (group.count == 0) break;
    decoded_ += group.count;
  }
  size_ = decoded_;
}

EncodedBytes::Group EncodedBytes::NextGroup(std::size_t& offset) const {
  const Values& values = ValuesOf(encoding_);
  std::array<std::uint8_t, 4> digits{};
  const std::size_t wanted = DigitsPerGroup(encoding_);
  for (std::size_t found = 0; found < wanted; ++offset) {
    if (offset == end_) return {};
    const std::uint8_t value = values[static_cast<unsigned char>(text_[offset])];
    if (value != kPassedOver) digits[found++] = value;
  }
  const auto [a, b, c, d] = digits;
  if (encoding_ == Encoding::Hexadecimal) return {{static_cast<std::uint8_t>(a << 4U | b)}, 1};
  Group group;
  const auto put = [&group](unsigned byte) { group.bytes[group.count++] = static_cast<std::uint8_t>(byte); };
  put(a << 2U | (b >> 4U & 3U));
  if (c < kPad) put((b & 15U) << 4U | (c >> 2U & 15U));
  if (d < kPad) put((c & 3U) << 6U | d);
  return group;
}

void EncodedBytes::Read(std::int32_t position, std::span<std::uint8_t> out) {
  if (position < cursor_.position || position - cursor_.position > 65536) {
    const auto behind = std::ranges::upper_bound(marks_, position, {}, &Mark::position);
    cursor_ = *std::prev(behind);
  }
  std::size_t written = 0;
  while (written < out.size()) {
    std::size_t offset = cursor_.offset;
    const Group group = NextGroup(offset);
    if (group.count == 0) break;
    for (std::int32_t i = 0; i < group.count; ++i) {
      if (cursor_.position + i >= position && written < out.size())
        out[written++] = group.bytes[static_cast<std::size_t>(i)];
    }
    // The cursor stays at the group of which something is left.
    if (written == out.size() &&
        position + static_cast<std::int32_t>(written) < cursor_.position + group.count)
      break;
    cursor_ = {cursor_.position + group.count, offset};
  }
  std::ranges::fill(out.subspan(written), std::uint8_t{0});
}

}  // namespace zel
