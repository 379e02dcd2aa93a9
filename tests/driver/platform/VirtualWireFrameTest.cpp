#include <gtest/gtest.h>

#include "driver/platform/VirtualWireFrame.h"

namespace DeviceDriverTest {

using DeviceDriver::VirtualWireFrame;
using Bytes = std::vector<std::uint8_t>;

TEST(VirtualWireFrame, RequestsAreBigEndianHeadersBeforeTheirBody)
{
    const Bytes body = {0xAA, 0xBB, 0xCC};
    const Bytes frame = VirtualWireFrame::Encode({VirtualWireFrame::Kind::BulkWrite, 0x01020304, 0x0A0B0C0D, 3},
                                                 body.data(), body.size());
    EXPECT_EQ(frame, (Bytes{'O', 'B', 'S', 'M', 1, 3, 0, 0, 1, 2, 3, 4, 10, 11, 12, 13, 0, 0, 0, 3, 0, 0, 0, 3,
                            0xAA, 0xBB, 0xCC}));
}

TEST(VirtualWireFrame, AnswerHeadersAreReadOrRefused)
{
    const Bytes answer = {'O', 'B', 'S', 'M', 1, 2, 3, 0, 0, 0, 1, 7, 0, 0, 1, 0};
    const auto header = VirtualWireFrame::DecodeAnswerHeader(answer.data());
    ASSERT_TRUE(header.has_value());
    EXPECT_EQ(header->kind, VirtualWireFrame::Kind::BulkRead);
    EXPECT_EQ(header->status, VirtualWireFrame::Status::Short);
    EXPECT_EQ(header->requestId, 263u);
    EXPECT_EQ(header->bodyLength, 256u);

    Bytes wrongMagic = answer;
    wrongMagic[0] = 'X';
    EXPECT_FALSE(VirtualWireFrame::DecodeAnswerHeader(wrongMagic.data()).has_value());
    Bytes wrongVersion = answer;
    wrongVersion[4] = 2;
    EXPECT_FALSE(VirtualWireFrame::DecodeAnswerHeader(wrongVersion.data()).has_value());
    Bytes tooLong = answer;
    tooLong[13] = 0x10;
    tooLong[14] = 0x00;
    tooLong[15] = 0x01;
    EXPECT_FALSE(VirtualWireFrame::DecodeAnswerHeader(tooLong.data()).has_value());
}

}
