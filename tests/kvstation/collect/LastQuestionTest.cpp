// What is told of a collection while it goes on.
#include "kvstation/collect/LastQuestion.h"

#include <gtest/gtest.h>

#include <thread>

namespace kvstation {
namespace {

TEST(LastQuestion, IsReadWholeWhileTheNextIsWritten) {
    const std::string texts[] = {std::string(600, 'a'), std::string(5, 'b'), std::string(639, 'c')};
    LastQuestion last;
    last.noteWork(texts[0]);
    std::atomic<bool> isOver = false;
    std::thread collection([&] {
        for (std::size_t i = 0; !isOver; ++i) {
            last.noteWork(texts[i % std::size(texts)]);
            if (i % 64 == 0)
                std::this_thread::yield();
        }
    });
    std::size_t torn = 0;
    for (int i = 0; i < 20000; ++i) {
        const Doing doing = last.read();
        torn += std::ranges::count(texts, std::string(doing.text.data())) == 1 ? 0 : 1;
    }
    isOver = true;
    collection.join();
    EXPECT_EQ(torn, 0u);
}

TEST(LastQuestion, IsCutWhereItIsTooLong) {
    LastQuestion last;
    EXPECT_STREQ(last.read().text.data(), "");
    last.noteWork(std::string(2000, 'x'));
    EXPECT_EQ(std::string(last.read().text.data()), std::string(Doing::kLongest, 'x'));
    EXPECT_FALSE(last.read().isQuestion);
}

}  // namespace
}  // namespace kvstation
