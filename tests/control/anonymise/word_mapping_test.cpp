// Words that become other words of their form.
#include <gtest/gtest.h>
#include <utf8.h>

#include <map>
#include <random>
#include <set>

#include "control/anonymise/text_mapping.h"
#include "doubles/tries_all.h"

namespace zenqay {
namespace {

constexpr KeyedHash::Key kKey = {0x0706050403020100, 0x0f0e0d0c0b0a0908};

/// What of a word must stay: "A" for an upper letter, "a" for a lower one, "0" for a digit, by its bytes.
Text FormOf(const Text& word) {
  Text form = word;
  for (char& c : form) {
    if (c >= 'A' && c <= 'Z') c = 'A';
    if (c >= 'a' && c <= 'z') c = 'a';
    if (c >= '0' && c <= '9') c = '0';
  }
  return form;
}

TEST(KeyedHash, GivesWhatItsAuthorsGive) {
  const KeyedHash hash(kKey);
  Text bytes;
  for (char byte = 0; byte < 15; ++byte) bytes += byte;

  EXPECT_EQ(hash(bytes), 0xa129ca6149be45e5U);
  EXPECT_EQ(hash(""), 0x726fdb47dd0e0e31U);
}

TEST(KeyedHash, HasAnotherKeyForEachRun) {
  EXPECT_NE(KeyedHash::RandomKey(), KeyedHash::RandomKey());
}

TEST(WordMapping, IsAPermutationOfTheWordsOfAFormWithoutAFixedOne) {
  const TextMapping mapping(kKey);
  for (const Text form : {"A", "a", "0", "00", "A0", "aA", "0a0", "Aaa"}) {
    std::set<Text> words = {""};
    for (const char kind : form) {
      const Text letters = kind == 'A'   ? "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                           : kind == 'a' ? "abcdefghijklmnopqrstuvwxyz"
                                         : "0123456789";
      std::set<Text> longer;
      for (const Text& word : words) {
        for (const char letter : letters) longer.insert(word + letter);
      }
      words = longer;
    }

    std::set<Text> changed;
    Text stayed;
    for (const Text& word : words) {
      const Text other = mapping.ChangedWord(word);
      changed.insert(other);
      if (other == word) stayed += word + " ";
    }

    EXPECT_EQ(changed, words) << form;
    EXPECT_EQ(stayed, form == "0" ? "0 " : form == "00" ? "00 " : "") << form;
  }
}

TEST(WordMapping, KeepsLengthsClassesAndCasesOfRandomWords) {
  const TextMapping mapping(kKey);
  const unsigned seed = TriesAll() ? std::random_device()() : 1;
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  constexpr std::string_view kLetters = "ABCXYZabcxyz0189";
  for (int i = 0; i < 20'000; ++i) {
    Text word;
    for (auto length = 1 + random() % 24; length > 0; --length) word += kLetters[random() % kLetters.size()];

    const Text changed = mapping.ChangedWord(word);

    ASSERT_EQ(FormOf(changed), FormOf(word)) << word;
    ASSERT_NE(LowerCased(changed), word.find_first_not_of('0') == Text::npos ? "" : LowerCased(word));
    ASSERT_EQ(mapping.ChangedWord(LowerCased(word)), LowerCased(changed)) << word;
  }
}

TEST(WordMapping, KeepsNumbersNumbersOfAsManyDigits) {
  const TextMapping mapping(kKey);

  EXPECT_EQ(mapping.Changed("0"), "0");
  EXPECT_EQ(mapping.Changed("000"), "000");
  for (int number = 1; number < 3000; ++number) {
    const Text plain = std::to_string(number);
    const Text changed = mapping.Changed(plain);
    ASSERT_EQ(changed.size(), plain.size());
    ASSERT_NE(changed.front(), '0') << plain;
    ASSERT_EQ(mapping.Changed("00" + plain), "00" + changed);
    ASSERT_EQ(mapping.Changed("-" + plain + ".5"), "-" + changed + "." + mapping.Changed("5"));
  }
}

TEST(WordMapping, IsAnotherOneForAnotherKey) {
  EXPECT_NE(TextMapping(kKey).Changed("Amsterdam"), TextMapping({1, 2}).Changed("Amsterdam"));
}

TEST(WordMapping, SpreadsAChangeOfOneLetterOverTheWord) {
  const TextMapping mapping(kKey);
  std::map<std::size_t, int> alike;  // how many words have so many letters in common with the first one
  const Text first = mapping.Changed("AAAAAAAAAA");
  for (char letter = 'B'; letter <= 'Z'; ++letter) {
    for (std::size_t at = 0; at < 10; ++at) {
      Text word = "AAAAAAAAAA";
      word[at] = letter;
      const Text other = mapping.Changed(word);
      std::size_t common = 0;
      for (std::size_t i = 0; i < 10; ++i) common += first[i] == other[i] ? 1 : 0;
      ++alike[common];
    }
  }

  EXPECT_GT(alike[0], 120);  // of 250; by chance 169
  EXPECT_LE(alike.rbegin()->first, 5U);
}

TEST(TextMapping, ChangesAWordWhereverItStandsAndNothingBetweenWords) {
  const TextMapping mapping(kKey);
  const Text key = mapping.Changed("SN4711A");
  const Text name = mapping.Changed("Müller");

  EXPECT_EQ(mapping.Changed("  O'" + Text("Müller") + "'' (SN4711A),\t\"SN4711A\"_SN4711A\r\n\x7f\x7f%€–"),
            "  " + mapping.Changed("O") + "'" + name + "'' (" + key + "),\t\"" + key + "\"_" + key + "\r\n\x7f\x7f%€–");
  EXPECT_EQ(mapping.Changed(""), "");
}

TEST(TextMapping, KeepsScriptsAndLengthsOfOtherLetters) {
  const TextMapping mapping(kKey);
  for (const Text text : {"Äöü", "Straße", "Œuvre", "Ελλάδα", "Москва", "Ёлка", "Łódź", "東京", "서울", "とうきょう",
                          "ไทย", "𠮷野", "ﬁ", "e\u0301te\u0301"}) {
    const Text changed = mapping.Changed(text);

    EXPECT_NE(changed, text);
    EXPECT_EQ(changed.size(), text.size()) << text << " " << changed;
    EXPECT_EQ(mapping.Changed(text), changed);
  }
}

/// Each letter in the other case, as far as it has one.
Text CaseTurned(const Text& text) {
  Text turned;
  for (auto at = text.begin(); at != text.end();) {
    Letter letter = *LetterOf(utf8::unchecked::next(at));
    letter.isLower = !letter.isLower;
    utf8::unchecked::append(CharacterAt(letter, letter.place), std::back_inserter(turned));
  }
  return turned;
}

TEST(TextMapping, KeepsTheCasesOfLettersOfTwoCases) {
  const TextMapping mapping(kKey);
  const std::pair<Text, Text> cases[] = {
      {"abcXYZ", "ABCxyz"}, {"àéŠ", "ÀÉš"}, {"ΑΩ", "αω"}, {"ЯЁ", "яё"}, {"ŁŻ", "łż"}};
  for (const auto& [one, other] : cases) {
    ASSERT_EQ(CaseTurned(one), other);
    EXPECT_NE(mapping.Changed(one), one);
    EXPECT_EQ(CaseTurned(mapping.Changed(one)), mapping.Changed(other));
  }
}

TEST(TextMapping, LeavesBytesThatAreNoText) {
  const TextMapping mapping(kKey);

  EXPECT_EQ(mapping.Changed("\xff"), "\xff");
  EXPECT_EQ(mapping.Changed("AB\xC3"), mapping.Changed("AB") + "\xC3");
  EXPECT_EQ(mapping.Changed(Text("AB\0CD", 5)), mapping.Changed("AB") + Text(1, '\0') + mapping.Changed("CD"));
}

/// Each letter is where LetterOf says, and is alone there.
TEST(Alphabets, HaveAPlaceForEachLetter) {
  std::set<std::tuple<char32_t, std::uint32_t, bool>> places;
  for (char32_t character = 0; character < 0x30000; character += character < 0x3400 ? 1 : 61) {
    const std::optional<Letter> letter = LetterOf(character);
    if (!letter) continue;
    ASSERT_LT(letter->place, letter->size) << std::hex << std::uint32_t{character};
    ASSERT_EQ(CharacterAt(*letter, letter->place), character) << std::hex << std::uint32_t{character};
    ASSERT_TRUE(places.insert({letter->alphabet, letter->place, letter->isLower}).second);
  }
  for (const char32_t sign : U" -_'\"%&/()=?+*#.,;:<>|\u00A0\u00AB\u00D7\u20AC\u2013\u3000\U0001F600") {
    EXPECT_FALSE(LetterOf(sign)) << std::hex << std::uint32_t{sign};
  }
}

}  // namespace
}  // namespace zenqay
