#include "Tools/Recognition/Engine.h"

#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>

#include <utility>

namespace orvesa {

namespace {

constexpr int assumedResolution = 150; // only keeps the library from guessing one and saying so

tesseract::PageSegMode modeOf(Engine::Layout layout)
{
    switch (layout) {
    case Engine::Layout::block:
        return tesseract::PSM_SINGLE_BLOCK;
    case Engine::Layout::line:
        return tesseract::PSM_SINGLE_LINE;
    case Engine::Layout::column:
        return tesseract::PSM_SINGLE_BLOCK_VERT_TEXT;
    }
    return tesseract::PSM_SINGLE_BLOCK;
}

Glyph glyphAt(const tesseract::ResultIterator &place)
{
    Glyph glyph;
    const std::unique_ptr<char[]> text(place.GetUTF8Text(tesseract::RIL_SYMBOL));
    glyph.text = QString::fromUtf8(text.get());
    glyph.confidence = static_cast<double>(place.Confidence(tesseract::RIL_SYMBOL));
    glyph.wordConfidence = static_cast<double>(place.Confidence(tesseract::RIL_WORD));
    glyph.beginsWord = place.IsAtBeginningOf(tesseract::RIL_WORD);
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    if (place.BoundingBox(tesseract::RIL_SYMBOL, &left, &top, &right, &bottom)) {
        glyph.box = QRect(left, top, right - left, bottom - top);
    }
    return glyph;
}

} // namespace

Engine::Engine(std::unique_ptr<tesseract::TessBaseAPI> library) : m_library(std::move(library)) {}

Engine::~Engine() = default;

std::unique_ptr<Engine> Engine::load(const QByteArray &languages)
{
    auto library = std::make_unique<tesseract::TessBaseAPI>();
    if (library->Init(nullptr, languages.constData(), tesseract::OEM_LSTM_ONLY) != 0) {
        return nullptr;
    }
    library->SetVariable("preserve_interword_spaces", "1");
    library->SetVariable("debug_file", "/dev/null");
    return std::unique_ptr<Engine>(new Engine(std::move(library)));
}

Reading Engine::read(const GrayImage &image, Layout layout)
{
    m_library->SetPageSegMode(modeOf(layout));
    m_library->SetImage(image.pixels().data(), image.width(), image.height(), 1, image.width());
    m_library->SetSourceResolution(assumedResolution);
    Reading reading;
    if (m_library->Recognize(nullptr) == 0) {
        const std::unique_ptr<tesseract::ResultIterator> place(m_library->GetIterator());
        if (place != nullptr && !place->Empty(tesseract::RIL_SYMBOL)) {
            do {
                if (reading.lines.empty() || place->IsAtBeginningOf(tesseract::RIL_TEXTLINE)) {
                    reading.lines.emplace_back();
                }
                reading.lines.back().glyphs.push_back(glyphAt(*place));
            } while (place->Next(tesseract::RIL_SYMBOL));
        }
    }
    m_library->Clear();
    return reading;
}

} // namespace orvesa
