// The descriptions of the entities, held against what their copies do.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <regex>
#include <set>

#include "doubles/copy_fixture.h"
#include "doubles/file_content.h"
#include "entities/entity.h"
#include "process/labels.h"

namespace zenqay {
namespace {

using Names = std::set<Text>;

/// Every first group of the pattern in the text.
Names Found(const Text& text, const std::regex& pattern) {
  Names names;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
    names.insert((*match)[1]);
  }
  return names;
}

const std::filesystem::path kSource = std::filesystem::path(ZENQAY_SHARE).parent_path() / "src";

TEST(Entities, AreThoseThatTheJobHasOperationsFor) {
  const Text job = ContentOf(kSource / "job" / "clsDataCopy.h");
  Text units;
  for (const auto& file : std::filesystem::directory_iterator(kSource / "entities")) units += ContentOf(file.path());

  const Names copied = Found(job, std::regex(R"(void Copy(\w+)\(const Text& TableName, [^;]*SyncMethod\);)"));
  EXPECT_EQ(copied.size(), 10U);
  EXPECT_EQ(Found(job, std::regex(R"(static const Entity k(\w+);)")), copied);
  EXPECT_EQ(Found(units, std::regex(R"(const Entity clsDataCopy::k(\w+) = )")), copied);
  EXPECT_EQ(Found(units, std::regex(R"(\.copy = &clsDataCopy::Copy(\w+))")), copied);
  EXPECT_EQ(Found(units, std::regex(R"(&clsDataCopy::k(\w+)[,}])")), copied);  // the list
  EXPECT_EQ(Entities().size(), copied.size());
}

/// The ERP's entities as its three generations have them, in the order in which a table's name is compared; behind a
/// plus the warranty expiry follows.
TEST(Entities, HaveTheirNamesGenerationsAndPostCopyWork) {
  Text known;

  for (const Entity* entity : Entities()) {
    known += entity->name;
    for (const EntitySource& source : entity->sources) {
      known += Text(" ") + source.generation + (source.isFollowedByWarrantyExpiry ? "+" : "");
    }
    known += "\n";
  }

  EXPECT_EQ(known,
            "site 1 3 8\n"
            "product 1\n"
            "problem 1 3 8\n"
            "symptom 1\n"
            "priority 1 3 8\n"
            "object 3+\n"
            "warranties 1 3+ 8\n"
            "sitecontract 3 8\n"
            "contracts 1 3 8\n"
            "serializeditem 8\n");
}

TEST(FindEntity, TakesTheNameInAnyCaseAndTheGenerationAsItIs) {
  EXPECT_EQ(FindEntity("Site"), Entities()[0]);
  EXPECT_EQ(FindEntity("WARRANTIES"), Entities()[6]);
  EXPECT_EQ(FindEntity("Sites"), nullptr);
  EXPECT_EQ(FindEntity(""), nullptr);
  EXPECT_EQ(FindEntity("Site")->SourceUnder("8"), &Entities()[0]->sources[2]);
  EXPECT_EQ(FindEntity("Site")->SourceUnder("08"), nullptr);
}

/// A row of any entity in which no field is missing. Texts are "1", which also serves as a number, and times are date
/// objects.
class FullRow : public ScriptedObject {
 public:
  FullRow(CopyFixture& copy, const Text& action, std::int16_t contractStatus)
      : ScriptedObject(copy.journal, "row"), copy_(copy), action_(action), contractStatus_(contractStatus) {}

  Value Call(std::string_view operation, Arguments) override {
    if (operation.starts_with("has")) return true;
    if (operation == "getActionType") return action_;
    if (operation == "getContractStatus") return contractStatus_;
    if (operation.ends_with("Time")) return copy_.components.Create("java:java.util.Date");
    if (operation == "getContracts" || operation == "getServiceContracts" ||
        operation == "getContractConfigurationLines") {
      return Object(std::make_shared<FullRow>(copy_, "", /*contractStatus=*/0));
    }
    return "1";
  }

 private:
  CopyFixture& copy_;
  Text action_;
  std::int16_t contractStatus_;
};

/// Copies the entity under one of its generations, full and only changed, from a manager that lists a deleted, a
/// changed and a new row, of which the local table has none.
struct DescribedCopy {
  DescribedCopy(const Entity& entity, const EntitySource& source) : copy(source.generation) {
    for (const std::int16_t syncMethod : {std::int16_t{1}, std::int16_t{2}}) {
      std::vector<Object> rows;
      const std::int16_t copiedStatus = Text(source.generation) == "1" ? 2 : 10;
      for (const char* action : {"D", "U", "I"}) {
        rows.push_back(Object(std::make_shared<FullRow>(copy, action, copiedStatus)));
      }
      const auto manager = copy.AddManager(source.managerClass, "manager", rows);
      if (Text(entity.name) == "sitecontract" && syncMethod == 2) {
        manager->Answers("List", Object(copy.components.MakeEnumeration("terms", {})));
      }
      copy.database.AffectNext(std::vector<std::int64_t>(20, 0));
      outcome += copy.CopyTable(1, entity.name, syncMethod) == CopyResult::Done ? "" : copy.RunLog();
      journal += copy.journal.Take();
    }
  }

  CopyFixture copy;
  Text journal;
  Text outcome;  // empty when both copies were done
};

/// The columns that the statements on the table name.
Names ColumnsWritten(const Text& journal, const Text& table) {
  static const Names kWords = {"UPDATE", "SET", "INSERT", "INTO", "VALUES", "DELETE", "FROM", "WHERE", "AND", "NULL"};
  static const std::regex kLiteral(R"(N?'[^']*'|\{d '[^']*'\})");
  const std::regex statement("sql ((?:UPDATE|INSERT INTO|DELETE FROM) " + table + "[ (].*)");
  Names columns;
  for (const Text& found : Found(journal, statement)) {
    for (const Text& word : Found(std::regex_replace(found, kLiteral, "0"), std::regex("([A-Za-z_]+)"))) {
      if (!kWords.contains(word) && word != table) columns.insert(word);
    }
  }
  return columns;
}

/// Calls `look(entity, source)` for every entity under each of its generations.
template <typename Look>
void ForEachSource(Look look) {
  for (const Entity* entity : Entities()) {
    for (const EntitySource& source : entity->sources) {
      SCOPED_TRACE(Text(entity->name) + " under generation " + source.generation);
      look(*entity, source);
    }
  }
}

TEST(Entities, NameExactlyTheColumnsThatTheirStatementsName) {
  ForEachSource([](const Entity& entity, const EntitySource& source) {
    const DescribedCopy described(entity, source);

    EXPECT_EQ(described.outcome, "");
    EXPECT_EQ(ColumnsWritten(described.journal, entity.name), Names(source.columns.begin(), source.columns.end()));
  });
}

TEST(Entities, ComeFromTheManagerAndTheErpTableThatTheyName) {
  ForEachSource([](const Entity& entity, const EntitySource& source) {
    const DescribedCopy described(entity, source);

    EXPECT_EQ(Found(described.journal, std::regex(R"(create (Kv.*))")), Names{source.managerClass});
    EXPECT_EQ(Found(described.journal, std::regex(R"(manager\.NetList\w+\(&"(\w+)\", &<criteria>\))")),
              Names{source.tableCode});
  });
}

TEST(Entities, AreCalledInAFailureByTheTextsThatTheyName) {
  ForEachSource([](const Entity& entity, const EntitySource& source) {
    CopyFixture copy(source.generation);
    copy.AddManager(source.managerClass, "manager")->Fails("List", RuntimeError(5000, "manager", "it broke"));

    copy.CopyTable(1, entity.name, 1);

    const Text caption = GetLabel(copy.process, entity.label);
    const Text erp = GetLabel(copy.process, source.erpLabel);
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"manager\",\"it broke: List\"\r\n"
              "\"Data copy: " +
                  caption + "\",\"" + caption + " could not be copied from " + erp + ".\"\r\n");
  });
}

/// The columns that the reference schema gives each table, by the database's own account: "SITE.DESCRIPTION".
Names SchemaColumns() {
  const Text schema = ContentOf(Text(ZENQAY_SHARE) + "/schema/sqlite.sql");
  sqlite3* opened = nullptr;
  sqlite3_open(":memory:", &opened);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(opened, sqlite3_close);
  sqlite3_exec(opened, schema.c_str(), nullptr, nullptr, nullptr);
  Names columns;
  const auto add = [](void* set, int, char** fields, char**) {
    static_cast<Names*>(set)->insert(Text(fields[0]) + "." + fields[1]);
    return 0;
  };
  sqlite3_exec(opened, "SELECT m.name, c.name FROM sqlite_master m, pragma_table_info(m.name) c WHERE m.type = 'table'",
               add, &columns, nullptr);
  return columns;
}

TEST(Entities, HaveTheirColumnsInTheReferenceSchema) {
  const Names schema = SchemaColumns();
  Text missing;

  ForEachSource([&](const Entity& entity, const EntitySource& source) {
    Text table = entity.name;
    for (char& letter : table) letter = static_cast<char>(letter - 'a' + 'A');
    for (const char* column : source.columns) {
      if (!schema.contains(table + "." + column)) missing += table + "." + column + "\n";
    }
  });

  EXPECT_EQ(missing, "");
}

}  // namespace
}  // namespace zenqay
