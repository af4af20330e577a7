#include "render/scene/ImageFile.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>

namespace vantro::render {
namespace {

class ImageFile : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "pictures.XXXXXX").string();
        directory = ::mkdtemp(pattern.data());
        path = directory / "picture";
    }
    void TearDown() override { std::filesystem::remove_all(directory); }

    void writeBytes(std::string_view bytes) const {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    std::string bytesOfFile() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// One grey picture with a brighter right half.
    void writeJpeg(unsigned width, unsigned height) const {
        std::FILE* file = std::fopen(path.c_str(), "wb");
        jpeg_error_mgr errors;
        jpeg_compress_struct state;
        state.err = jpeg_std_error(&errors);
        jpeg_create_compress(&state);
        jpeg_stdio_dest(&state, file);
        state.image_width = width;
        state.image_height = height;
        state.input_components = 3;
        state.in_color_space = JCS_RGB;
        jpeg_set_defaults(&state);
        jpeg_start_compress(&state, TRUE);
        std::vector<JSAMPLE> row(std::size_t{3} * width);
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = i < row.size() / 2 ? 60 : 180;
        for (unsigned y = 0; y < height; ++y) {
            JSAMPROW start = row.data();
            jpeg_write_scanlines(&state, &start, 1);
        }
        jpeg_finish_compress(&state);
        jpeg_destroy_compress(&state);
        std::fclose(file);
    }

    std::filesystem::path directory;
    std::filesystem::path path;
};

TEST_F(ImageFile, ReadsBackThePngThatItWrote) {
    auto picture = media::PixelBuffer::allocate(media::PixelFormat::bgra, 37, 11);
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 37 * 4; ++x)
            picture->mutableRow(0, y)[x] = static_cast<std::uint8_t>(x * 5 + y * 17);
    writePng(path, *picture); // whatever the alpha bytes hold
    const auto read = loadImage(path);
    ASSERT_TRUE(read);
    ASSERT_EQ(read->width(), 37);
    ASSERT_EQ(read->height(), 11);
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 37 * 4; ++x)
            ASSERT_EQ(read->row(0, y)[x], x % 4 == 3 ? 255 : picture->row(0, y)[x]);
}

TEST_F(ImageFile, WritesI420PixelsInTheirColours) {
    auto picture = media::PixelBuffer::allocate(media::PixelFormat::i420, 5, 3);
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            std::fill_n(picture->mutableRow(plane, y), picture->stride(plane),
                        static_cast<std::uint8_t>(plane == 0   ? 63
                                                  : plane == 1 ? 102
                                                               : 240));
    writePng(path, *picture);
    const auto read = loadImage(path);
    ASSERT_TRUE(read);
    const auto* red = read->row(0, 1) + 8;
    EXPECT_NEAR(red[2], 255, 2);
    EXPECT_NEAR(red[1], 0, 2);
    EXPECT_NEAR(red[0], 0, 2);
}

TEST_F(ImageFile, PremultipliesTransparentPngPixels) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = 2;
    image.height = 1;
    image.format = PNG_FORMAT_BGRA;
    const std::uint8_t straight[] = {200, 100, 50, 128, 255, 255, 255, 0};
    ASSERT_NE(png_image_write_to_file(&image, path.c_str(), 0, straight, 0, nullptr), 0);
    const auto read = loadImage(path);
    const std::uint8_t expected[] = {100, 50, 25, 128, 0, 0, 0, 0};
    for (int i = 0; i < 8; ++i)
        EXPECT_NEAR(read->row(0, 0)[i], expected[i], 1) << i;
}

TEST_F(ImageFile, ReadsJpegAsOpaque) {
    writeJpeg(64, 16);
    const auto read = loadImage(path);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->width(), 64);
    EXPECT_NEAR(read->row(0, 5)[4 * 10 + 1], 60, 3);
    EXPECT_NEAR(read->row(0, 5)[4 * 50 + 1], 180, 3);
    EXPECT_EQ(read->row(0, 5)[4 * 50 + 3], 255);
}

TEST_F(ImageFile, GivesNothingForWhatIsNoPicture) {
    EXPECT_EQ(loadImage(directory / "absent"), nullptr);
    EXPECT_EQ(loadImage(directory), nullptr);
    for (const std::string_view bytes :
         {"", "\xFF\xD8", "\xFF\xD8\xFF\xE0 but no more", "GIF89a and so on",
          "\x89PNG\r\n\x1A\n and then nonsense"}) {
        writeBytes(bytes);
        EXPECT_EQ(loadImage(path), nullptr) << bytes;
    }
    writePng(path, *media::PixelBuffer::allocate(media::PixelFormat::bgra, 300, 300));
    writeBytes(bytesOfFile().substr(0, 60)); // its pixels are cut off
    EXPECT_EQ(loadImage(path), nullptr);
}

TEST_F(ImageFile, RefusesPicturesThatAreTooLarge) {
    writeJpeg(16400, 8);
    EXPECT_EQ(loadImage(path), nullptr);
    // A PNG that claims 16384 x 16384 pixels is refused by its header, without reserving memory.
    writePng(path, *media::PixelBuffer::allocate(media::PixelFormat::bgra, 16, 16));
    std::string bytes = bytesOfFile();
    const std::string header("IHDR\0\0\x40\0\0\0\x40\0\x08\x02\0\0\0", 17);
    std::uint32_t check = 0xFFFFFFFFU;
    for (const char byte : header) {
        check ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            check = check >> 1 ^ (check & 1 ? 0xEDB88320U : 0);
    }
    bytes.replace(12, 17, header);
    for (int i = 0; i < 4; ++i)
        bytes[static_cast<std::size_t>(29 + i)] = static_cast<char>(~check >> (24 - 8 * i));
    writeBytes(bytes);
    EXPECT_EQ(loadImage(path), nullptr);
}

TEST_F(ImageFile, LeavesNothingBehindWhenAPngCannotBeWritten) {
    const auto picture = media::PixelBuffer::allocate(media::PixelFormat::bgra, 4, 4);
    EXPECT_THROW(writePng(directory / "absent" / "x.png", *picture),
                 std::filesystem::filesystem_error);
    std::filesystem::create_directory(path);
    EXPECT_THROW(writePng(path, *picture), std::filesystem::filesystem_error);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory), {}), 1);
}

} // namespace
} // namespace vantro::render
