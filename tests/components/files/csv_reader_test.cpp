#include "components/files/csv_reader.h"

#include <gtest/gtest.h>

#include "components/files/erp_files.h"

namespace zenqay {
namespace {

/// One line for each record, "line: [cell][cell]" with "-" for an absent cell, and one for the error it ends with.
Text RecordsOf(std::string_view content) {
  TempDirectory directory;
  directory.Write("A.csv", content);
  Text records;
  const Text error = ErrorOf([&] {
    CsvReader reader(directory.path() / "A.csv", "A.AsManager");
    CsvRecord record;
    while (reader.Read(record)) {
      records += std::to_string(record.line) + ": ";
      for (std::size_t cell = 0; cell < record.cells.size(); ++cell) {
        records += record.cells[cell].isAbsent ? "-" : "[" + Text(record.TextOf(cell)) + "]";
      }
      records += "\n";
    }
  });
  return error == "no error" ? records : records + error + "\n";
}

TEST(CsvReaderRead, ReadsTheRecordsOfAFile) {
  const struct {
    const char* content;
    const char* records;
  } cases[] = {
      {"", ""},
      {"a,b\nc,d\n", "1: [a][b]\n2: [c][d]\n"},
      {"a,b\nc,d", "1: [a][b]\n2: [c][d]\n"},
      {"a,b\r\nc,d\r\n", "1: [a][b]\n2: [c][d]\n"},
      {"a,b\rc,d\r", "1: [a][b]\n2: [c][d]\n"},
      {"a,,\"\"\n,\n", "1: [a]-[]\n2: --\n"},
      {" a , b\t\n", "1: [ a ][ b\t]\n"},
      {"\"a,b\",\"say \"\"no\"\"\"\n", "1: [a,b][say \"no\"]\n"},
      {"\"\"", "1: []\n"},
      {"a,", "1: [a]-\n"},
      {"\xEF\xBB\xBF\"a\"\n", "1: [a]\n"},
      {"\xEF\xBB\xBF", ""},
      {"a\n\xEF\xBB\xBF\n", "1: [a]\n2: [\xEF\xBB\xBF]\n"},
  };

  for (const auto& [content, records] : cases) EXPECT_EQ(RecordsOf(content), records) << content;
}

TEST(CsvReaderRead, CountsLinesOverBlankOnesAndOverLineBreaksInCells) {
  EXPECT_EQ(RecordsOf("\n\r\na\r\n\n\"b\nb\"\n\"c\r\nc\"\r\n\"d\rd\"\n\re\n"),
            "3: [a]\n5: [b\nb]\n7: [c\r\nc]\n9: [d\rd]\n12: [e]\n");
}

TEST(CsvReaderRead, HandsOnWhatStandsInFrontOfABrokenQuote) {
  const struct {
    const char* content;
    const char* records;
  } cases[] = {
      {"a,b\nc,\"d\"x\n", "1: [a][b]\n13 Type mismatch: A.csv, line 2, column 2: broken quote (A.AsManager)\n"},
      {"a,b\nc,d\"\n", "1: [a][b]\n13 Type mismatch: A.csv, line 2, column 2: broken quote (A.AsManager)\n"},
      {"a\n\"b\" \n", "1: [a]\n13 Type mismatch: A.csv, line 2, column 1: broken quote (A.AsManager)\n"},
      {"a\nb,c,\"d\ne\n",
       "1: [a]\n13 Type mismatch: A.csv, line 2, column 3: broken quote, nothing closes it (A.AsManager)\n"},
  };

  for (const auto& [content, records] : cases) EXPECT_EQ(RecordsOf(content), records) << content;
}

TEST(CsvReaderRead, GivesUpARecordThatDoesNotEnd) {
  Text content = "a\nb,\"";
  content.append(17 * 1024 * 1024, 'x');

  EXPECT_EQ(RecordsOf(content),
            "1: [a]\n13 Type mismatch: A.csv, line 2, column 2: the record does not end within 16 MiB (A.AsManager)\n");
}

TEST(CsvReaderRead, ReadsCellsThatAreLongerThanAChunk) {
  TempDirectory directory;
  const Text longCell(200'000, 'x');
  directory.Write("A.csv", "a,\"" + longCell + "\"\r\n\r\nb," + longCell + "\r\n");
  CsvReader reader(directory.path() / "A.csv", "A.AsManager");
  CsvRecord first;
  CsvRecord second;

  ASSERT_TRUE(reader.Read(first));
  ASSERT_TRUE(reader.Read(second));

  EXPECT_EQ(first.line, 1);
  EXPECT_TRUE(first.TextOf(1) == longCell);
  EXPECT_EQ(second.line, 3);
  EXPECT_TRUE(second.TextOf(1) == longCell);
  EXPECT_FALSE(reader.Read(second));
}

/// Line ends and quotes fall on every place of a chunk's end.
TEST(CsvReaderRead, ReadsTheSameWhereverAChunkEnds) {
  const Text chunk(64 * 1024, 'x');
  for (std::size_t shift = 0; shift < 16; ++shift) {
    const Text filler = chunk.substr(shift);

    EXPECT_EQ(RecordsOf(filler + "\r\n\"a\"\"\r\nb\",\r\nc"), "1: [" + filler + "]\n2: [a\"\r\nb]-\n4: [c]\n") << shift;
  }
}

TEST(CsvReader, RaisesWhatCannotBeOpened) {
  TempDirectory directory;
  std::filesystem::create_directory(directory.path() / "D.csv");

  EXPECT_EQ(ErrorOf([&] { CsvReader(directory.path() / "A.csv", "A.AsManager"); }),
            "53 File not found: A.csv (A.AsManager)");
  EXPECT_EQ(ErrorOf([&] {
              CsvRecord record;
              CsvReader(directory.path() / "D.csv", "D.DsManager").Read(record);
            }),
            "75 Path/File access error: D.csv (Is a directory) (D.DsManager)");
}

}  // namespace
}  // namespace zenqay
