#include "tools/assetc/iconlist.h"

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <cstring>
#include <memory>
#include <set>

#include "tools/common/inputerror.h"
#include "tools/common/tablefile.h"

namespace {

using Drawing = std::unique_ptr<RsvgHandle, decltype(&g_object_unref)>;
using Canvas = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

Drawing openDrawing(const IconEntry& entry) {
    GError* error = nullptr;
    Drawing drawing(rsvg_handle_new_from_file(entry.file.c_str(), &error), g_object_unref);
    if (!drawing) {
        const std::string reason = error ? error->message : "unknown reason";
        g_clear_error(&error);
        throw InputError(entry.file, 0, "the drawing cannot be read: " + reason);
    }
    double width = 0, height = 0;
    if (!rsvg_handle_get_intrinsic_size_in_pixels(drawing.get(), &width, &height) || width != entry.width ||
        height != entry.height)
        throw InputError(entry.file, 0,
                         "the drawing is " + std::to_string(width) + " x " + std::to_string(height) +
                             " pixels, the icon table says " + std::to_string(entry.width) + " x " +
                             std::to_string(entry.height));
    return drawing;
}

void render(const IconEntry& entry, RsvgHandle* drawing, cairo_surface_t* surface) {
    cairo_t* context = cairo_create(surface);
    const RsvgRectangle area{0, 0, static_cast<double>(entry.width), static_cast<double>(entry.height)};
    GError* error = nullptr;
    const bool drawn = rsvg_handle_render_document(drawing, context, &area, &error);
    cairo_destroy(context);
    const std::string reason = error ? error->message : "";
    g_clear_error(&error);
    if (!drawn) throw InputError(entry.file, 0, "the drawing cannot be rendered: " + reason);
}

// cairo stores colours multiplied by their alpha; the engine wants them straight.
std::uint32_t straight(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    if (alpha == 0) return 0;
    const auto channel = [&](int shift) {
        const std::uint32_t value = (((pixel >> shift) & 0xFF) * 255 + alpha / 2) / alpha;
        return (value > 255 ? 255 : value) << shift;
    };
    return alpha << 24 | channel(16) | channel(8) | channel(0);
}

void appendPixel(ImageData& image, std::uint32_t pixel) {
    if (image.format == PixelFormat::Mask8) {
        image.pixels.push_back(static_cast<std::uint8_t>(pixel >> 24));
        return;
    }
    const std::uint32_t value = straight(pixel);
    for (int shift = 0; shift < 32; shift += 8) image.pixels.push_back(static_cast<std::uint8_t>(value >> shift));
}

}  // namespace

std::vector<IconEntry> readIconList(const std::filesystem::path& path) {
    const TableFile table = TableFile::read(path);
    std::vector<IconEntry> icons;
    std::set<std::string> names;
    for (const auto& row : table.rows()) {
        const auto cell = [&](const char* column) { return row.cells[table.column(column)]; };
        if (table.number(row, table.column("index")) != static_cast<int>(icons.size()))
            table.fail(row, "icons must be listed in order, from 0 on; this row should have the index " +
                                std::to_string(icons.size()));
        IconEntry icon;
        icon.name = cell("name");
        icon.file = path.parent_path() / cell("file");
        icon.width = table.number(row, table.column("width"));
        icon.height = table.number(row, table.column("height"));
        icon.meaning = cell("meaning");
        if (!names.insert(icon.name).second) table.fail(row, "the name '" + icon.name + "' is used twice");
        if (const std::string format = cell("format"); format == "Argb8888")
            icon.format = PixelFormat::Argb8888;
        else if (format != "Mask8")
            table.fail(row, "'" + format + "' is not a format; use Mask8 or Argb8888");
        icons.push_back(icon);
    }
    return icons;
}

ImageData drawIcon(const IconEntry& entry) {
    const Drawing drawing = openDrawing(entry);
    const Canvas canvas(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, entry.width, entry.height),
                        cairo_surface_destroy);
    render(entry, drawing.get(), canvas.get());
    cairo_surface_flush(canvas.get());

    ImageData image{entry.name, entry.format, entry.width, entry.height, {}};
    const unsigned char* data = cairo_image_surface_get_data(canvas.get());
    const int stride = cairo_image_surface_get_stride(canvas.get());
    for (int y = 0; y < entry.height; ++y)
        for (int x = 0; x < entry.width; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, data + y * stride + x * 4, sizeof pixel);
            appendPixel(image, pixel);
        }
    return image;
}
