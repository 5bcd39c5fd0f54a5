#include "base/hash_table.h"

namespace vexor::hash_detail {

namespace {

constexpr bucket_count buckets(std::uint64_t prime) { return {prime, ~std::uint64_t{0} / prime + 1}; }

} // namespace

// Each is the least prime above twice the one before.
constinit bucket_count const g_bucket_counts[num_bucket_counts] = {
    buckets(193),        buckets(389),         buckets(787),         buckets(1579),       buckets(3163),
    buckets(6329),       buckets(12659),       buckets(25321),       buckets(50647),      buckets(101323),
    buckets(202661),     buckets(405323),      buckets(810653),      buckets(1621309),    buckets(3242623),
    buckets(6485261),    buckets(12970537),    buckets(25941089),    buckets(51882191),   buckets(103764383),
    buckets(207528767),  buckets(415057561),   buckets(830115133),   buckets(1660230277), buckets(3320460557),
    buckets(6640921121), buckets(13281842257), buckets(26563684541),
};

} // namespace vexor::hash_detail
