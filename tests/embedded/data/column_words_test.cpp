// What the engine's vectors become, type by type: vectors made by hand, with values where they
// hurt.
#include <limits>

#include "Support.h"
#include "embedded/data/ColumnWords.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

constexpr double missing = MCMV::Missing;
constexpr auto two53 = std::int64_t{1} << 53;

// One value; of a null, what lies under it.
template <class T>
struct Cell {
  T value;
  bool isNull = false;
};

struct Written {
  std::vector<double> numbers;
  ColumnFaults faults;
};

// Has the cells written as a column of this type, which is destroyed.
template <class T>
Written written(duckdb_logical_type type, const std::vector<Cell<T>>& cells,
                const std::vector<std::uint64_t>& multiplicity = {}) {
  duckdb_data_chunk chunk = ::duckdb_create_data_chunk(&type, 1);
  ::duckdb_destroy_logical_type(&type);
  duckdb_vector vector = ::duckdb_data_chunk_get_vector(chunk, 0);
  ::duckdb_vector_ensure_validity_writable(vector);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    static_cast<T*>(::duckdb_vector_get_data(vector))[i] = cells[i].value;
    if (cells[i].isNull) ::duckdb_validity_set_row_invalid(::duckdb_vector_get_validity(vector), i);
  }
  ::duckdb_data_chunk_set_size(chunk, cells.size());
  Written result;
  std::vector<OBS> words(cells.size());
  ColumnWriter(0, false).write(vector, cells.size(), words.data(), 1, result.faults,
                               multiplicity.empty() ? nullptr : multiplicity.data());
  ::duckdb_destroy_data_chunk(&chunk);
  for (const OBS& word : words) result.numbers.push_back(word.number);
  return result;
}

template <class T>
Written written(duckdb_type type, const std::vector<Cell<T>>& cells,
                const std::vector<std::uint64_t>& multiplicity = {}) {
  return written(::duckdb_create_logical_type(type), cells, multiplicity);
}

template <class T>
std::vector<double> numbers(duckdb_type type, const std::vector<Cell<T>>& cells) {
  const Written result = written(type, cells);
  EXPECT_FALSE(result.faults.suspect);
  EXPECT_EQ(result.faults.nonFinite, 0U);
  return result.numbers;
}

template <class T>
bool isSuspect(duckdb_type type, Cell<T> cell) {
  return written<T>(type, {{T{}}, cell}).faults.suspect;
}

using Numbers = std::vector<double>;

TEST(ColumnWords, SmallWholeNumbersOfEachSize) {
  EXPECT_EQ(numbers<std::int8_t>(DUCKDB_TYPE_TINYINT, {{-128}, {127}, {5, true}}),
            (Numbers{-128, 127, missing}));
  EXPECT_EQ(numbers<std::uint8_t>(DUCKDB_TYPE_UTINYINT, {{255}}), Numbers{255});
  EXPECT_EQ(numbers<std::int16_t>(DUCKDB_TYPE_SMALLINT, {{-32768}}), Numbers{-32768});
  EXPECT_EQ(numbers<std::uint16_t>(DUCKDB_TYPE_USMALLINT, {{65535}, {0}}), (Numbers{65535, 0}));
  EXPECT_EQ(numbers<std::uint32_t>(DUCKDB_TYPE_UINTEGER, {{4294967295U}}), Numbers{4294967295.0});
}

TEST(ColumnWords, WholeNumbersOf64BitsAreSuspectWhereADoubleMayLoseThem) {
  EXPECT_EQ(numbers<std::int64_t>(DUCKDB_TYPE_BIGINT, {{two53}, {-two53}, {two53 + 2}}),
            (Numbers{0x1p53, -0x1p53, 0x1p53 + 2}));
  EXPECT_TRUE(isSuspect<std::int64_t>(DUCKDB_TYPE_BIGINT, {two53 + 1}));
  EXPECT_FALSE(isSuspect<std::int64_t>(DUCKDB_TYPE_BIGINT, {two53 + 1, true})) << "a null";
  // The largest become a power of two that is no value of the type any more.
  EXPECT_TRUE(
      isSuspect<std::int64_t>(DUCKDB_TYPE_BIGINT, {std::numeric_limits<std::int64_t>::max()}));
  EXPECT_TRUE(
      isSuspect<std::uint64_t>(DUCKDB_TYPE_UBIGINT, {std::numeric_limits<std::uint64_t>::max()}));
}

TEST(ColumnWords, WholeNumbersOf128BitsAreSuspectWhereADoubleLosesThem) {
  const std::uint64_t low = two53;
  EXPECT_EQ(numbers<duckdb_hugeint>(DUCKDB_TYPE_HUGEINT,
                                    {{{7, 0}}, {{low + 1, 0}, true}, {{0, 1}}, {{0, -1}}}),
            (Numbers{7, missing, 0x1p64, -0x1p64}));
  EXPECT_TRUE(isSuspect<duckdb_hugeint>(DUCKDB_TYPE_HUGEINT, {{low + 1, 0}}));
  // 2^120 + 2^64: the lower half comes back as it was, the upper one does not.
  EXPECT_TRUE(isSuspect<duckdb_hugeint>(DUCKDB_TYPE_HUGEINT, {{0, (std::int64_t{1} << 56) + 1}}));
  EXPECT_EQ(numbers<duckdb_uhugeint>(DUCKDB_TYPE_UHUGEINT, {{{7, 0}}, {{0, 2}}, {{1, 1}, true}}),
            (Numbers{7, 0x1p65, missing}));
  EXPECT_TRUE(isSuspect<duckdb_uhugeint>(DUCKDB_TYPE_UHUGEINT, {{low + 1, 0}}));
  EXPECT_TRUE(
      isSuspect<duckdb_uhugeint>(DUCKDB_TYPE_UHUGEINT, {{0, (std::uint64_t{1} << 56) + 1}}));
}

TEST(ColumnWords, DecimalsOfEachSize) {
  const auto decimal = [](auto cells, std::uint8_t width, std::uint8_t scale) {
    return written(::duckdb_create_decimal_type(width, scale), cells);
  };
  using Two = std::vector<Cell<std::int16_t>>;
  using Four = std::vector<Cell<std::int32_t>>;
  using Eight = std::vector<Cell<std::int64_t>>;
  using Sixteen = std::vector<Cell<duckdb_hugeint>>;
  EXPECT_EQ(decimal(Two{{125}, {-9, true}}, 4, 2).numbers, (Numbers{1.25, missing}));
  EXPECT_EQ(decimal(Four{{-1250}}, 9, 3).numbers, Numbers{-1.25});
  EXPECT_EQ(decimal(Eight{{1}}, 18, 1).numbers, Numbers{0.1});
  const std::uint64_t low = two53 + 1;
  const Written fraction = decimal(Sixteen{{{125, 0}}, {{low, 0}}}, 38, 2);
  EXPECT_EQ(fraction.numbers, (Numbers{1.25, 0x1p53 / 100}));
  EXPECT_FALSE(fraction.faults.suspect) << "digits behind the point may be lost";
  const Written whole = decimal(Sixteen{{{125, 0}}, {{low, 0}}}, 38, 0);
  EXPECT_EQ(whole.numbers.front(), 125);
  EXPECT_TRUE(whole.faults.suspect);
  EXPECT_TRUE(decimal(Eight{{two53 + 1}}, 18, 0).faults.suspect);
}

TEST(ColumnWords, DatesAreDaysAndTimesSeconds) {
  EXPECT_EQ(numbers<std::int32_t>(DUCKDB_TYPE_DATE, {{10}, {-1}, {3, true}}),
            (Numbers{10, -1, missing}));
  EXPECT_EQ(numbers<std::int64_t>(DUCKDB_TYPE_TIME, {{1'500'000}}), Numbers{1.5});
  EXPECT_EQ(numbers<std::int64_t>(DUCKDB_TYPE_TIMESTAMP, {{-1'500'000}}), Numbers{-1.5});
  EXPECT_EQ(numbers<std::int64_t>(DUCKDB_TYPE_TIMESTAMP_TZ, {{2'250'000}}), Numbers{2.25});
  EXPECT_EQ(numbers<std::int64_t>(DUCKDB_TYPE_TIMESTAMP_S, {{90}}), Numbers{90});
  EXPECT_EQ(numbers<std::int64_t>(DUCKDB_TYPE_TIMESTAMP_MS, {{1500}}), Numbers{1.5});
  EXPECT_EQ(numbers<std::int64_t>(DUCKDB_TYPE_TIMESTAMP_NS, {{2'500'000'000}}), Numbers{2.5});
}

TEST(ColumnWords, InfiniteDatesAreMissingAndCounted) {
  constexpr std::int32_t infinity = std::numeric_limits<std::int32_t>::max();
  const std::vector<Cell<std::int32_t>> cells{{1}, {infinity}, {-infinity}, {infinity, true}};
  const Written once = written(DUCKDB_TYPE_DATE, cells);
  EXPECT_EQ(once.numbers, (Numbers{1, missing, missing, missing}));
  EXPECT_EQ(once.faults.nonFinite, 2U) << "a null is no infinite date, whatever lies under it";
  EXPECT_EQ(written(DUCKDB_TYPE_DATE, cells, {1000, 20, 300, 4000}).faults.nonFinite, 320U);
}

TEST(ColumnWords, InfiniteNumbersCountForAsManyCasesAsTheyStandFor) {
  const double infinity = std::numeric_limits<double>::infinity();
  const Written result =
      written<double>(DUCKDB_TYPE_DOUBLE, {{1}, {infinity}, {-infinity, true}}, {1, 20, 300});
  EXPECT_EQ(result.numbers, (Numbers{1, missing, missing}));
  EXPECT_EQ(result.faults.nonFinite, 20U);
}

TEST(ColumnWords, ATypeThatIsNoValueIsABugOfOurs) {
  const Failure failure =
      failureOf([] { written<duckdb_interval>(DUCKDB_TYPE_INTERVAL, {{{1, 0, 0}}}); });
  EXPECT_EQ(failure.id, "Data vector of an unknown type ...");
  EXPECT_EQ(failure.kind, ErrorKind::Internal);
}

}  // namespace
}  // namespace embedded::data
