#include "backgrounds/tests/JpegFile.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

#include <jpeglib.h>

namespace vantro::backgrounds {

ByteImage readJpeg(const std::filesystem::path& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               std::fclose);
    if (!file)
        throw std::runtime_error("no file " + path.string());
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file.get());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_RGB;
    jpeg_start_decompress(&info);
    ByteImage image{.width = static_cast<int>(info.output_width),
                    .height = static_cast<int>(info.output_height),
                    .pixels = {}};
    const std::size_t stride = std::size_t{info.output_width} * 3;
    image.pixels.resize(stride * info.output_height);
    while (info.output_scanline < info.output_height) {
        auto* line = &image.pixels[info.output_scanline * stride];
        jpeg_read_scanlines(&info, &line, 1);
    }
    jpeg_finish_decompress(&info);
    const bool whole = errors.num_warnings == 0;
    jpeg_destroy_decompress(&info);
    if (!whole)
        throw std::runtime_error("damaged " + path.string());
    return image;
}

} // namespace vantro::backgrounds
