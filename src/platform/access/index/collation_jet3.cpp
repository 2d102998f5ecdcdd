#include "platform/access/index/collation_jet3.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace marlevo::access {

namespace {

// The weights of the bytes from 0x20 on. The low byte is the weight, the highest hexadecimal digit the accent.
// kAccentable marks a plain letter that also exists with an accent. 0 stands for a letter that is ordered like two
// letters, see TwoLetters.
constexpr std::uint16_t kAccentable = 0x0100;
constexpr int kJet3AccentShift = 12;
constexpr unsigned kFirstByte = 0x20;
constexpr std::array<std::uint16_t, 256 - kFirstByte> kWeights = {
    // clang-format off
    0x0011, 0x0012, 0x0013, 0x0014, 0x0015, 0x0016, 0x0017, 0x0018,  // 20
    0x0019, 0x001A, 0x001B, 0x001C, 0x001D, 0x001E, 0x001F, 0x0020,  // 28
    0x0056, 0x0057, 0x0058, 0x0059, 0x005A, 0x005B, 0x005C, 0x005D,  // 30
    0x005E, 0x005F, 0x0021, 0x0022, 0x0023, 0x0024, 0x0025, 0x0026,  // 38
    0x0027, 0x0160, 0x0061, 0x0162, 0x0064, 0x0166, 0x0067, 0x0068,  // 40
    0x0069, 0x016A, 0x006B, 0x006C, 0x006D, 0x006F, 0x0170, 0x0172,  // 48
    0x0073, 0x0074, 0x0075, 0x0176, 0x0077, 0x0178, 0x007A, 0x007B,  // 50
    0x007C, 0x017D, 0x007E, 0x0028, 0x0029, 0x002A, 0x002B, 0x002C,  // 58
    0x002D, 0x0160, 0x0061, 0x0162, 0x0064, 0x0166, 0x0067, 0x0068,  // 60
    0x0069, 0x016A, 0x006B, 0x006C, 0x006D, 0x006F, 0x0170, 0x0172,  // 68
    0x0073, 0x0074, 0x0075, 0x0176, 0x0077, 0x0178, 0x007A, 0x007B,  // 70
    0x007C, 0x017D, 0x007E, 0x002E, 0x002F, 0x0030, 0x0031, 0x0010,  // 78
    0x0010, 0x0010, 0x0018, 0x0032, 0x0013, 0x0033, 0x0034, 0x0035,  // 80
    0x0036, 0x0037, 0xA076, 0x0018, 0x0000, 0x0010, 0x0010, 0x0010,  // 88
    0x0010, 0x0018, 0x0018, 0x0013, 0x0013, 0x0038, 0x001E, 0x001E,  // 90
    0x0039, 0x003A, 0xA076, 0x0018, 0x0000, 0x0010, 0x0010, 0x607D,  // 98
    0x0011, 0x003B, 0x003C, 0x003D, 0x003E, 0x003F, 0x0040, 0x0041,  // A0
    0x0042, 0x0043, 0x0044, 0x0013, 0x0045, 0x001E, 0x0046, 0x0047,  // A8
    0x0048, 0x0049, 0x0058, 0x0059, 0x004A, 0x004B, 0x004C, 0x004D,  // B0
    0x004E, 0x0057, 0x004F, 0x0013, 0x0050, 0x0051, 0x0052, 0x0053,  // B8
    0x3060, 0x4060, 0x5060, 0x7060, 0x6060, 0x8060, 0x0000, 0x9062,  // C0
    0x3066, 0x4066, 0x5066, 0x6066, 0x306A, 0x406A, 0x506A, 0x606A,  // C8
    0x0065, 0x7070, 0x3072, 0x4072, 0x5072, 0x7072, 0x6072, 0x0054,  // D0
    0x0081, 0x3078, 0x4078, 0x5078, 0x6078, 0x407D, 0x007F, 0x0000,  // D8
    0x3060, 0x4060, 0x5060, 0x7060, 0x6060, 0x8060, 0x0000, 0x9062,  // E0
    0x3066, 0x4066, 0x5066, 0x6066, 0x306A, 0x406A, 0x506A, 0x606A,  // E8
    0x0065, 0x7070, 0x3072, 0x4072, 0x5072, 0x7072, 0x6072, 0x0055,  // F0
    0x0081, 0x3078, 0x4078, 0x5078, 0x6078, 0x407D, 0x007F, 0x607D,  // F8
    // clang-format on
};

constexpr std::uint16_t kControlWeight = 0x10;
constexpr std::uint16_t kTabWeight = 0x11;

std::uint16_t Weight(unsigned char byte) {
  if (byte >= kFirstByte) {
    return kWeights[byte - kFirstByte];
  }
  return byte == '\t' ? kTabWeight : kControlWeight;
}

std::string_view TwoLetters(unsigned char byte) {
  switch (byte) {
    case 0xDF:
      return "SS";
    case 0x8C:
    case 0x9C:
      return "OE";
    default:
      return "AE";
  }
}

// Collects the accents of a text as hexadecimal digits, two in a byte, between two digits 0. An accented letter adds
// its accent, and before it a digit 2 for each accentable letter without an accent since the last accented one.
// Example: "a" followed by an accent 6 gives the digits 0 2 6 0. Letters after the last accent add nothing.
class Accents {
 public:
  explicit Accents(Key& key) : key_(key) {}

  void Letter() { ++plain_letters_; }

  void Accent(unsigned accent) {
    if (!started_) {
      Put(0);
      started_ = true;
    }
    for (; plain_letters_ > 0; --plain_letters_) {
      Put(2);
    }
    Put(accent);
  }

  void End() {
    Put(0);
    if (half_) {
      Put(0);
    }
    key_.insert(key_.end(), bytes_.begin(), bytes_.end());
  }

 private:
  void Put(unsigned digit) {
    if (half_) {
      bytes_.back() |= std::byte(digit);
    } else {
      bytes_.push_back(std::byte(digit << 4));
    }
    half_ = !half_;
  }

  Key& key_;
  Key bytes_;
  std::size_t plain_letters_ = 0;
  bool started_ = false;
  bool half_ = false;
};

}  // namespace

void AppendJet3TextKey(std::string_view text, Key& key) {
  text.remove_suffix(text.size() - (text.find_last_not_of(' ') + 1));
  Accents accents(key);
  const auto append = [&](std::uint16_t weight) {
    key.push_back(std::byte(weight & 0xFF));
    if (const unsigned accent = weight >> kJet3AccentShift; accent != 0) {
      accents.Accent(accent);
    } else if ((weight & kAccentable) != 0) {
      accents.Letter();
    }
  };
  for (const char c : text) {
    const unsigned char byte = c;
    if (const std::uint16_t weight = Weight(byte); weight != 0) {
      append(weight);
    } else {
      for (const char letter : TwoLetters(byte)) {
        append(Weight(letter));
      }
    }
  }
  accents.End();
}

}  // namespace marlevo::access
