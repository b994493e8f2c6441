#include "BridgeModels/Text.h"

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <limits>
#include <memory>
#include <stdexcept>

namespace velmora {

namespace {

void require(UErrorCode status) {
  if (U_FAILURE(status)) throw std::runtime_error(std::string("ICU: ") + u_errorName(status));
}

// ICU's character iterator over UTF-8. Creating one is expensive, so each thread keeps its own.
class ClusterIterator {
 public:
  static ClusterIterator& ofThisThread() {
    thread_local ClusterIterator iterator;
    return iterator;
  }

  void begin(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    utext_openUTF8(&utext_, text.data(), static_cast<std::int64_t>(text.size()), &status);
    breaks_->setText(&utext_, status);
    require(status);
  }

  // The next boundary; only asked for while there is one.
  std::size_t next() { return static_cast<std::size_t>(breaks_->next()); }

  ~ClusterIterator() { utext_close(&utext_); }
  ClusterIterator(const ClusterIterator&) = delete;
  ClusterIterator& operator=(const ClusterIterator&) = delete;

 private:
  ClusterIterator() {
    UErrorCode status = U_ZERO_ERROR;
    breaks_.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    require(status);
  }

  UText utext_ = UTEXT_INITIALIZER;
  std::unique_ptr<icu::BreakIterator> breaks_;
};

// A code point that joins no neighbour of its own kind: between two of them there is always a boundary.
// Hangul syllables, which a jamo can follow, are such; so are controls. (CR LF is the caller's affair.)
bool standsAlone(UChar32 codePoint) {
  if (codePoint < 0x300) return true;
  if (codePoint >= 0xAC00 && codePoint <= 0xD7A3) return true;
  switch (u_getIntPropertyValue(codePoint, UCHAR_GRAPHEME_CLUSTER_BREAK)) {
    case U_GCB_OTHER:
    case U_GCB_CONTROL:
      return true;
    default:
      return false;
  }
}

constexpr std::uint64_t everyByte(std::uint64_t byte) { return byte * 0x0101010101010101u; }

// Whether eight bytes are all ASCII other than CR.
bool isPlain(std::uint64_t word) {
  const std::uint64_t fromReturn = word ^ everyByte('\r');
  const std::uint64_t returns = (fromReturn - everyByte(0x01)) & ~fromReturn;
  return ((word | returns) & everyByte(0x80)) == 0;
}

// Walks over a text from character to character. Only one may be in use on a thread at a time, since they
// share the thread's ClusterIterator.
class CharacterScanner {
 public:
  explicit CharacterScanner(std::string_view text) : text_(text) {}

  std::size_t position() const { return position_; }

  // Moves on by `limit` characters, or as many as are left; returns how many those were.
  std::int64_t skip(std::int64_t limit) {
    std::int64_t skipped = 0;
    while (skipped < limit && position_ < text_.size()) {
      if (position_ < clusterEnd_) {
        position_ = clusterStart_ + ClusterIterator::ofThisThread().next();
        ++skipped;
      } else {
        skipped += skipPlain(limit - skipped);
      }
    }
    return skipped;
  }

 private:
  // Moves over characters of one code point (or CR LF) and stops at one that may have more: that stretch
  // is then the cluster iterator's. A code point counts once it is known that the next stands alone too.
  std::int64_t skipPlain(std::int64_t limit) {
    std::int64_t skipped = 0;
    bool waiting = false;  // the code point at position_ has been seen, what follows it has not
    std::size_t ahead = position_;
    while (skipped < limit) {
      while (limit - skipped >= 8 && plainWordAt(ahead)) {
        skipped += waiting ? 8 : 7;
        waiting = true;
        position_ = ahead + 7;
        ahead += 8;
      }
      if (skipped == limit) break;
      if (ahead == text_.size()) {
        position_ = ahead;
        return skipped + (waiting ? 1 : 0);
      }
      const auto start = ahead;
      if (!nextStandsAlone(ahead)) {
        openCluster(ahead);
        return skipped;
      }
      if (waiting) ++skipped;
      waiting = true;
      position_ = start;
    }
    return skipped;
  }

  bool plainWordAt(std::size_t index) const {
    std::uint64_t word = 0;
    if (text_.size() - index < sizeof word) return false;
    std::memcpy(&word, text_.data() + index, sizeof word);
    return isPlain(word);
  }

  // Moves `index` past one code point, or CR LF. An ill-formed sequence reads as U+FFFD.
  bool nextStandsAlone(std::size_t& index) const {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text_.data());
    UChar32 codePoint = 0;
    U8_NEXT_OR_FFFD(bytes, index, text_.size(), codePoint);
    if (codePoint == '\r' && index < text_.size() && text_[index] == '\n') ++index;
    return standsAlone(codePoint);
  }

  // Hands the stretch from position_ to the first certain boundary after `index` to the cluster iterator.
  void openCluster(std::size_t index) {
    bool alone = false;
    auto end = index;
    while (end < text_.size()) {
      auto next = end;
      const bool nextAlone = nextStandsAlone(next);
      if (alone && nextAlone) break;
      alone = nextAlone;
      end = next;
    }
    clusterStart_ = position_;
    clusterEnd_ = end;
    ClusterIterator::ofThisThread().begin(text_.substr(clusterStart_, clusterEnd_ - clusterStart_));
  }

  std::string_view text_;
  std::size_t position_ = 0;  // always at a boundary between calls
  std::size_t clusterStart_ = 0;
  std::size_t clusterEnd_ = 0;
};

constexpr auto allCharacters = std::numeric_limits<std::int64_t>::max();

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char asciiLowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// In Turkish and Azerbaijani the dotted and the dotless i are two letters.
bool foldsDottedI(const icu::Locale& locale) {
  return std::string_view(locale.getLanguage()) == "tr" || std::string_view(locale.getLanguage()) == "az";
}

// Equal for texts that differ only in case or in how their accents are composed.
icu::UnicodeString folded(std::string_view text, bool dottedI) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* composer = icu::Normalizer2::getNFCInstance(status);
  require(status);
  auto unicode =
      icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  unicode = composer->normalize(unicode, status);
  unicode.foldCase(dottedI ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
  unicode = composer->normalize(unicode, status);
  require(status);
  return unicode;
}

}  // namespace

std::int64_t characterCount(std::string_view text) { return CharacterScanner(text).skip(allCharacters); }

std::string_view firstCharacters(std::string_view text, std::int64_t count) {
  CharacterScanner scanner(text);
  scanner.skip(count);
  return text.substr(0, scanner.position());
}

TextEnd lastCharacters(std::string_view text, std::int64_t count) {
  if (count <= 0) return {text.substr(text.size()), characterCount(text)};
  // The pass stops every `stride` characters and remembers where, as far back as the end can begin; only
  // the piece in which it does begin is then walked again.
  const std::int64_t stride = std::max<std::int64_t>(count / 16, 64);
  CharacterScanner scanner(text);
  std::deque<std::size_t> stops{0};
  std::int64_t firstStop = 0;  // in characters
  std::int64_t total = 0;
  while (true) {
    const auto skipped = scanner.skip(stride);
    total += skipped;
    if (skipped < stride) break;
    stops.push_back(scanner.position());
    if (firstStop + stride <= total - count) {
      stops.pop_front();
      firstStop += stride;
    }
  }
  if (total <= count) return {text, total};
  auto stop = stops.begin();
  for (; firstStop + stride <= total - count; firstStop += stride) ++stop;
  const auto piece = text.substr(*stop);
  return {piece.substr(firstCharacters(piece, total - count - firstStop).size()), total};
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
  const bool dottedI = foldsDottedI(icu::Locale::getDefault());
  if (!dottedI && isAscii(text) && isAscii(part)) {
    const auto sameLetter = [](char a, char b) { return asciiLowered(a) == asciiLowered(b); };
    return part.empty() ||
           std::search(text.begin(), text.end(), part.begin(), part.end(), sameLetter) != text.end();
  }
  return part.empty() || folded(text, dottedI).indexOf(folded(part, dottedI)) >= 0;
}

}  // namespace velmora
