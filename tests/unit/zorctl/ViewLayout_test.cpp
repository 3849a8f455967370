#include "tools/zorctl/watch/ViewLayout.h"

#include <gtest/gtest.h>

namespace {

TEST(ViewLayout, FillsAScreenOfAnySize) {
    StationPicture picture;
    picture.ports.resize(8);
    picture.points.resize(700, {1, "Gun", {"1"}});
    picture.events.lines.resize(100, {"T\xC3\xBCr"});
    for (int lines = 0; lines < 30; ++lines)
        for (int columns = 0; columns < 130; columns += 9) {
            const std::vector<ScreenLine> screen = LayOut(picture, lines, columns);
            ASSERT_EQ(static_cast<std::size_t>(lines), screen.size()) << columns;
            for (const ScreenLine& line : screen) {
                int width = 0;
                for (const Span& span : line) width += static_cast<int>(span.text.size());
                ASSERT_EQ(columns, width) << lines;
            }
        }
}

}  // namespace
