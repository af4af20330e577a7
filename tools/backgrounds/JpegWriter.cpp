#include "backgrounds/JpegWriter.h"

#include "base/OutputFile.h"

#include <cstdio>
#include <cstdlib>
#include <span>

#include <jpeglib.h>

namespace vantro::backgrounds {
namespace {

/// Compresses into memory, where only a lack of memory can fail; libjpeg's own handler then ends
/// the program.
class Compressor {
  public:
    Compressor() {
        m_info.err = jpeg_std_error(&m_errors);
        jpeg_create_compress(&m_info);
        jpeg_mem_dest(&m_info, &m_data, &m_size);
    }
    ~Compressor() {
        jpeg_destroy_compress(&m_info);
        std::free(m_data); // libjpeg allocates it with malloc
    }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    std::span<const char> compress(const ByteImage& image, int quality) {
        m_info.image_width = static_cast<JDIMENSION>(image.width);
        m_info.image_height = static_cast<JDIMENSION>(image.height);
        m_info.input_components = 3;
        m_info.in_color_space = JCS_RGB;
        jpeg_set_defaults(&m_info);
        jpeg_set_quality(&m_info, quality, TRUE);
        // The integer transform gives the same bits with and without vector instructions.
        m_info.dct_method = JDCT_ISLOW;
        m_info.comp_info[0].h_samp_factor = 1;
        m_info.comp_info[0].v_samp_factor = 1;
        jpeg_start_compress(&m_info, TRUE);
        const auto stride = static_cast<std::size_t>(image.width) * 3;
        for (std::size_t row = 0; row < static_cast<std::size_t>(image.height); ++row) {
            // libjpeg's input rows are not const, but it only reads them.
            auto* line = const_cast<JSAMPLE*>(&image.pixels[row * stride]);
            jpeg_write_scanlines(&m_info, &line, 1);
        }
        jpeg_finish_compress(&m_info);
        return {reinterpret_cast<const char*>(m_data), m_size};
    }

  private:
    jpeg_compress_struct m_info{};
    jpeg_error_mgr m_errors{};
    unsigned char* m_data = nullptr;
    unsigned long m_size = 0;
};

} // namespace

void writeJpeg(const std::filesystem::path& path, const ByteImage& image, int quality) {
    Compressor compressor;
    base::writeWholeFile(path, compressor.compress(image, quality));
}

} // namespace vantro::backgrounds
