#include <QtTest/QAbstractItemModelTester>
#include <random>

#include "VelmoraApp/AppModel/KeyedListModel.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;

// Rows of a letter each, whose key is a number.
class Letters : public KeyedListModel<char, int> {
 public:
  QVariant data(const QModelIndex& index, int role) const override {
    const auto* row = rowAt(index);
    return row != nullptr && role == Qt::DisplayRole ? QVariant(QChar::fromLatin1(*row)) : QVariant();
  }
  std::string text() const {
    std::string letters;
    for (const auto& item : items()) letters += item.row;
    return letters;
  }
  /// Shows the letters under their own codes as keys.
  void showLetters(const std::string& letters) {
    std::vector<Item> next;
    for (const char letter : letters) next.push_back({letter, letter});
    show(std::move(next));
  }
};

class KeyedListModelTest : public ::testing::Test {
 protected:
  KeyedListModelTest() {
    QObject::connect(&letters, &Letters::rowsRemoved, &letters, [this](const auto&, int first, int last) {
      changes.push_back("-" + std::to_string(first) + ".." + std::to_string(last));
    });
    QObject::connect(&letters, &Letters::rowsInserted, &letters, [this](const auto&, int first, int last) {
      changes.push_back("+" + std::to_string(first) + ".." + std::to_string(last));
    });
    QObject::connect(&letters, &Letters::rowsMoved, &letters,
                     [this](const auto&, int from, int, const auto&, int to) {
                       changes.push_back(std::to_string(from) + ">" + std::to_string(to));
                     });
    QObject::connect(&letters, &Letters::dataChanged, &letters,
                     [this](const auto& first) { changes.push_back("~" + std::to_string(first.row())); });
    QObject::connect(&letters, &Letters::modelReset, &letters, [this] { changes.push_back("reset"); });
  }

  std::vector<std::string> changesOf(const std::string& next) {
    changes.clear();
    letters.showLetters(next);
    EXPECT_EQ(letters.text(), next);
    return changes;
  }

  Letters letters;
  QAbstractItemModelTester tester{&letters, QAbstractItemModelTester::FailureReportingMode::Fatal};
  std::vector<std::string> changes;
};

TEST_F(KeyedListModelTest, TheSameListChangesNothing) {
  letters.showLetters("abc");
  EXPECT_THAT(changesOf("abc"), ElementsAre());
}

TEST_F(KeyedListModelTest, InsertsAndRemovesWholeRuns) {
  EXPECT_THAT(changesOf("cdef"), ElementsAre("+0..3"));
  EXPECT_THAT(changesOf("abcdef"), ElementsAre("+0..1"));
  EXPECT_THAT(changesOf("abcdefgh"), ElementsAre("+6..7"));
  EXPECT_THAT(changesOf("abgh"), ElementsAre("-2..5"));
  EXPECT_THAT(changesOf("bxyg"), ElementsAre("-3..3", "-0..0", "+1..2"));
  EXPECT_THAT(changesOf(""), ElementsAre("-0..3"));
}

TEST_F(KeyedListModelTest, MovesRowsThatChangedPlaces) {
  letters.showLetters("abcd");
  EXPECT_THAT(changesOf("dabc"), ElementsAre("3>0"));
}

TEST_F(KeyedListModelTest, ARowThatChangedIsTheOnlyOneReadAgain) {
  letters.show({{1, 'a'}, {2, 'b'}, {3, 'c'}});
  changes.clear();
  letters.show({{1, 'a'}, {2, 'x'}, {3, 'c'}});
  EXPECT_EQ(letters.text(), "axc");
  EXPECT_THAT(changes, ElementsAre("~1"));
}

TEST_F(KeyedListModelTest, AnyListBecomesAnyOtherWithoutAReset) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    std::string next = "abcdefghijkl";
    std::shuffle(next.begin(), next.end(), random);
    next.resize(random() % (next.size() + 1));
    const auto seen = changesOf(next);
    EXPECT_THAT(seen, ::testing::Not(::testing::Contains("reset")));
  }
}

TEST_F(KeyedListModelTest, SelectedRowsStaySelectedWhereverTheyGo) {
  letters.showLetters("abcd");
  const QPersistentModelIndex selected = letters.index(2);
  letters.showLetters("xyabcd");
  EXPECT_EQ(selected.row(), 4);
  letters.showLetters("cb");
  EXPECT_EQ(selected.row(), 0);
  letters.showLetters("b");
  EXPECT_FALSE(selected.isValid());
}

TEST_F(KeyedListModelTest, IndicesThatDoNotExistHaveNoData) {
  letters.showLetters("a");
  EXPECT_FALSE(letters.data({}, Qt::DisplayRole).isValid());
  EXPECT_EQ(letters.rowCount(letters.index(0)), 0);
}

}  // namespace
}  // namespace velmora
