// The rules behind using the samples at random: lists of actions as text, what is chosen next, how a find is shortened.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "soak/action.h"
#include "soak/generator.h"
#include "soak/growth.h"
#include "soak/shorten.h"

namespace qvx::soak {
namespace {

TEST(SoakReplay, WhatIsNotALineOfOneIsRefusedWithItsNumber) {
    for (const char* line : {"press a", "key", "key Nothing", "key ctrl+F13", "key ctrl+", "click 1", "click 1 x",
                             "click 1 2 3", "drag 1 2 3 4 Nothing", "wheel", "repeat 0", " key a"}) {
        int number = 0;
        EXPECT_FALSE(ReplayOf("form first\n" + std::string(line) + "\n", number)) << line;
        EXPECT_EQ(number, 2) << line;
    }
    int number = 0;
    EXPECT_FALSE(ReplayOf("key a\n", number)) << "no form";
    EXPECT_EQ(ReplayOf("# x\r\n\r\nform first\r\nkey a\r\n", number),
              (Replay{"first", 1, {{.deed = Deed::key, .text = "a"}}}));
}

Scene Form() {
    Scene scene;
    scene.size = {600, 400};
    scene.focus = Kind::grid;
    scene.parts = {{Kind::grid, {10, 30, 400, 300}}, {Kind::button, {420, 30, 500, 60}}, {Kind::edit, {0, 0, 1, 1}}};
    return scene;
}

TEST(SoakGenerator, EverythingItChoosesIsTheSameAgainFromItsTextAndFromItsSeed) {
    std::vector<Scene> scenes(7, Form());
    scenes[1].away = true;
    scenes[2].minimized = true;
    scenes[3].parts.push_back({Kind::popup, {50, 50, 150, 250}});
    scenes[4].main = false;
    scenes[4].answers = 100;
    scenes[5].parts.clear();
    scenes[6].parts.push_back({Kind::canvas, {0, 0, 300, 200}});
    Replay replay{"design invoice", 12, {}};
    Generator generator(7);
    Generator twin(7);
    std::set<Deed> deeds;
    for (int i = 0; i < 20'000; ++i) {
        const Scene& scene = scenes[static_cast<std::size_t>(i) % scenes.size()];
        replay.actions.push_back(generator.Next(scene));
        ASSERT_EQ(replay.actions.back(), twin.Next(scene));
        deeds.insert(replay.actions.back().deed);
    }
    EXPECT_EQ(deeds.size(), static_cast<std::size_t>(Deed::back) + 1) << "every deed comes up";
    int line = 0;
    EXPECT_EQ(ReplayOf(TextOf(replay, "crash\nin two lines"), line), replay) << line;
}

// File dialogs take what is typed for a file's name. Dates have slashes, which lead to folders that are not there.
TEST(SoakGenerator, TypesNoPathsAndLittleIntoDialogs) {
    Generator generator(1);
    Scene scene = Form();
    scene.main = false;
    scene.answers = 5;
    for (int i = 0; i < 20'000; ++i) {
        const Action action = generator.Next(scene);
        if (action.deed != Deed::type) continue;
        const std::string& text = action.text;
        EXPECT_LE(text.size(), 12u) << text;
        const bool date = text[0] >= '0' && text[0] <= '9' && text.find("..") == std::string::npos &&
                          text.find_first_of("\\:") == std::string::npos;
        EXPECT_TRUE(date || text.find('/') == std::string::npos) << text;
    }
}

TEST(SoakShortening, LeavesWhatIsNeededAndEndsInTime) {
    const auto key = [](int number) { return Action{.deed = Deed::wheel, .count = number}; };
    std::vector<Action> all;
    for (int i = 0; i < 100; ++i) all.push_back(key(i));
    const auto has = [&](const std::vector<Action>& actions, int number) {
        return std::find(actions.begin(), actions.end(), key(number)) != actions.end();
    };
    const struct { std::vector<int> needed; } cases[] = {{{99}}, {{0}}, {{3, 50, 97}}, {{}}, {{98, 99}}};
    for (const auto& [needed] : cases) {
        const auto goesWrong = [&](const std::vector<Action>& actions) {
            return std::all_of(needed.begin(), needed.end(), [&](int number) { return has(actions, number); });
        };
        std::vector<Action> expected;
        for (const int number : needed) expected.push_back(key(number));
        EXPECT_EQ(Shortened(all, goesWrong, [] { return true; }), expected);
        int tries = 0;
        const std::vector<Action> early = Shortened(all, goesWrong, [&] { return ++tries < 4; });
        EXPECT_TRUE(goesWrong(early));
    }
}

TEST(SoakGrowth, IsWhatComesBackWithEveryTurnOrWithoutMoreToShow) {
    const std::vector<Counts> steady(12, {100, 200, 30});
    EXPECT_FALSE(Growth(steady));
    EXPECT_FALSE(GrowthByTurns(steady, false));
    const struct {
        const char* what;
        long Counts::*member;
        bool withoutTurns;  // more windows are no fault by themselves: they may be to be seen
    } cases[] = {
        {"windows", &Counts::windows, false}, {"graphics", &Counts::graphics, true}, {"menus", &Counts::menus, true}};
    for (const auto& [what, member, withoutTurns] : cases) {
        std::vector<Counts> counts = steady;
        for (std::size_t i = 0; i < counts.size(); ++i) counts[i].*member += static_cast<long>(i);
        EXPECT_FALSE(Growth(counts)) << what << ": caches fill up";
        EXPECT_TRUE(GrowthByTurns(counts, false)) << what;
        EXPECT_EQ(GrowthByTurns(counts, true).has_value(), withoutTurns) << what;
        counts.back().*member += 1000;
        const std::optional<Grown> grown = Growth(counts);
        EXPECT_EQ(grown.has_value(), withoutTurns) << what;
        if (grown) {
            EXPECT_EQ(std::pair(grown->from, grown->to), std::pair(counts.size() - 2, counts.size() - 1));
        }
        for (std::size_t i = counts.size() - 3; i < counts.size(); ++i)
            counts[i].windows += static_cast<long>(1000 * i);
        EXPECT_FALSE(Growth(counts) || GrowthByTurns(counts, true)) << what << ": there is more to see";
    }
}

// Messages that close by themselves let a turn end in a dialog now and then, or from some turn on.
TEST(SoakGrowth, IsNotADialogThatSomeTurnsEndIn) {
    std::vector<Counts> opening;
    for (const long windows : {22, 12, 13, 23, 23, 23, 30, 30, 30, 30, 30, 30}) opening.push_back({windows, 300, 20});
    EXPECT_FALSE(GrowthByTurns(opening, false)) << "one dialog over the other";
    for (std::size_t open = 0; open < 12; ++open) {
        for (const std::size_t until : {open + 1, std::size_t{12}}) {
            std::vector<Counts> counts(12, {13, 300, 20});
            for (std::size_t i = open; i < until; ++i) counts[i] = {23, 375, 20};
            EXPECT_FALSE(GrowthByTurns(counts, false)) << open;
        }
        std::vector<Counts> counts(12, {13, 300, 20});
        counts[open] = {23, 375, 20};
        for (std::size_t i = 0; i < counts.size(); ++i) counts[i].graphics += static_cast<long>(i);
        EXPECT_TRUE(GrowthByTurns(counts, false)) << open << ": every turn leaves one behind all the same";
    }
}

}  // namespace
}  // namespace qvx::soak
