#include "widgets/flexgrid/row_index.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <vector>

namespace qvx::flexgrid {
namespace {

// The same as plain arrays.
struct Reference {
    std::vector<RowId> ids;
    std::vector<int> deviations;  // by identity

    std::int64_t ExtentBefore(std::size_t position, int shared) const {
        std::int64_t extent = 0;
        for (std::size_t i = 0; i < position; ++i) {
            extent += shared + deviations[ids[i]];
        }
        return extent;
    }
    int PositionAt(std::int64_t y, int shared) const {
        for (std::size_t i = 0; i < ids.size(); ++i) {
            y -= shared + deviations[ids[i]];
            if (y < 0) {
                return static_cast<int>(i);
            }
        }
        return static_cast<int>(ids.size());
    }
};

void ExpectSame(const RowIndex& index, const Reference& reference) {
    ASSERT_EQ(index.Size(), static_cast<int>(reference.ids.size()));
    std::vector<RowId> walked;
    index.ForEachLeaf(0, index.Size() - 1,
                      [&](std::span<const RowId> leaf) { walked.insert(walked.end(), leaf.begin(), leaf.end()); });
    ASSERT_EQ(walked, reference.ids);
}

// Random work of all kinds, biased now toward growth and now toward shrinking so that the tree gains and loses levels.
TEST(RowIndex, AgreesWithPlainArrays) {
    std::mt19937 random(20);
    const auto below = [&](std::size_t n) { return n == 0 ? 0 : static_cast<int>(random() % n); };
    RowIndex index;
    Reference reference;
    RowId next = 0;
    int inserted = 0;  // where the last insertion ended
    const int shared = 16;
    for (int round = 0; round < 3000; ++round) {
        const bool growing = (round / 600) % 2 == 0;
        const int size = index.Size();
        const int kind = below(12);
        if (kind < (growing ? 6 : 2)) {
            const int place = below(5);
            const int at = place == 0   ? size
                           : place == 1 ? 0
                           : place == 2 ? std::min(inserted, size)
                                        : below(static_cast<std::size_t>(size) + 1);
            std::vector<RowId> ids(random() % 3 == 0 ? 1 : 1 + random() % RowIndex::leafCapacity);
            std::iota(ids.begin(), ids.end(), next);
            next += static_cast<RowId>(ids.size());
            reference.deviations.resize(next);
            index.Insert(at, ids);
            inserted = at + static_cast<int>(ids.size());
            reference.ids.insert(reference.ids.begin() + at, ids.begin(), ids.end());
        } else if (kind < 8 && size > 0) {
            const int at = below(static_cast<std::size_t>(size));
            const int most = random() % 2 == 0 ? 1 : random() % 8 == 0 ? size : 1500;
            const int count = std::min(size - at, 1 + below(static_cast<std::size_t>(most)));
            index.Remove(at, count);
            reference.ids.erase(reference.ids.begin() + at, reference.ids.begin() + at + count);
        } else if (kind == 8 && size > 0) {
            const unsigned step = 2 + random() % 7;
            std::vector<bool> marked(static_cast<std::size_t>(size));
            std::vector<RowId> kept;
            for (std::size_t i = 0; i < marked.size(); ++i) {
                marked[i] = growing ? i % step == 0 && i % 97 < 20 : i % step != 0;
                if (!marked[i]) {
                    kept.push_back(reference.ids[i]);
                }
            }
            index.RemoveMarked(marked);
            reference.ids = kept;
        } else if (kind == 9 && size > 0) {
            const int at = below(static_cast<std::size_t>(size));
            const auto count = static_cast<std::size_t>(below(static_cast<std::size_t>(size - at)) + 1);
            const auto first = reference.ids.begin() + at;
            std::shuffle(first, first + static_cast<int>(count), random);
            index.Assign(at, std::span(reference.ids).subspan(static_cast<std::size_t>(at), count));
        } else if (kind == 10 && random() % 8 == 0) {
            SparseMap<int> others;
            std::fill(reference.deviations.begin(), reference.deviations.end(), 0);
            for (int i = below(3); i > 0 && size > 0; --i) {
                const RowId id = reference.ids[static_cast<std::size_t>(below(static_cast<std::size_t>(size)))];
                others.Set(id, reference.deviations[id] = 5);
            }
            index.SetDeviations(others, shared);
        } else if (size > 0) {
            for (int i = 0; i < 5; ++i) {
                const int at = below(static_cast<std::size_t>(size));
                const int pixels = below(5) == 0 ? 0 : below(40) - shared;
                index.SetDeviation(at, pixels);
                reference.deviations[reference.ids[static_cast<std::size_t>(at)]] = pixels;
            }
        }
        ExpectSame(index, reference);
        for (int i = 0; i < 4; ++i) {
            const int position = below(reference.ids.size() + 1);
            ASSERT_EQ(index.ExtentBefore(position, shared),
                      reference.ExtentBefore(static_cast<std::size_t>(position), shared));
            if (position < index.Size()) {
                ASSERT_EQ(index.At(position), reference.ids[static_cast<std::size_t>(position)]);
            }
            const auto y = static_cast<std::int64_t>(random() % (reference.ids.size() * shared + 10));
            ASSERT_EQ(index.PositionAt(y, shared), reference.PositionAt(y, shared));
            ASSERT_EQ(index.PositionAt(index.ExtentBefore(index.Size(), shared), shared), index.Size());
        }
    }
}

TEST(RowIndex, RowsThatComeOneAfterTheOtherFillTheirLeaves) {
    for (const int below : {0, 600}) {
        RowIndex index;
        for (int i = 0; i < below; ++i) {
            const RowId id = 200'000u + static_cast<RowId>(i);
            index.Insert(i, std::span(&id, 1));
        }
        for (RowId id = 0; id < 200'000; ++id) {
            index.Insert(static_cast<int>(id), std::span(&id, 1));
        }
        EXPECT_LT(index.MemoryUsed(), 200'000 * 4.2) << below;
        EXPECT_GE(index.MemoryUsed(), 200'000u * sizeof(RowId)) << below;
        for (int i = 0; i < 100'000; ++i) {
            index.Remove(i, 1);
        }
        EXPECT_EQ(index.At(99'999), 199'999u) << below;
        EXPECT_LT(index.MemoryUsed(), 100'000 * 9) << below;
    }
}

TEST(SparseMap, AgreesWithAPlainArray) {
    std::mt19937 random(7);
    SparseMap<int> map;
    std::vector<int> reference(300);
    for (int i = 0; i < 20'000; ++i) {
        // Keys a power of two apart land in the same places.
        const std::size_t place = random() % 300;
        const auto key = static_cast<RowId>(place << 20);
        if (random() % 2 == 0) {
            map.Set(key, reference[place] = 1 + static_cast<int>(random() % 1000));
        } else {
            map.Erase(key);
            reference[place] = 0;
        }
        const std::size_t asked = random() % 300;
        const int* found = map.Find(static_cast<RowId>(asked << 20));
        ASSERT_EQ(found ? *found : 0, reference[asked]);
    }
    std::size_t entries = 0;
    map.ForEach([&](RowId, int) { ++entries; });
    EXPECT_EQ(entries, map.Size());
}

}  // namespace
}  // namespace qvx::flexgrid
