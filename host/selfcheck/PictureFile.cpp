#include "host/selfcheck/PictureFile.h"

#include <wincodec.h>

#include "host/Com.h"

namespace kv::host {

namespace {

ComPtr<IWICImagingFactory> imaging() {
    ComPtr<IWICImagingFactory> factory;
    check(
        CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(factory.GetAddressOf())),
        L"Using the imaging component of Windows");
    return factory;
}

std::vector<BYTE> packed(const Pixels& picture) {
    std::vector<BYTE> bytes;
    bytes.reserve(picture.rgb.size() * 3);
    for (const std::uint32_t pixel : picture.rgb) {
        for (const unsigned shift : {0U, 8U, 16U}) {
            bytes.push_back(static_cast<BYTE>(pixel >> shift));
        }
    }
    return bytes;
}

}  // namespace

Pixels readPicture(const std::wstring& file) {
    const std::wstring tried = L"Reading \"" + file + L"\"";
    const ComPtr<IWICImagingFactory> factory = imaging();
    ComPtr<IWICBitmapDecoder> decoder;
    check(factory->CreateDecoderFromFilename(file.c_str(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                             decoder.GetAddressOf()),
          tried.c_str());
    ComPtr<IWICBitmapFrameDecode> frame;
    check(decoder->GetFrame(0, frame.GetAddressOf()), tried.c_str());
    ComPtr<IWICFormatConverter> converter;
    check(factory->CreateFormatConverter(converter.GetAddressOf()), tried.c_str());
    check(converter->Initialize(frame.Get(), GUID_WICPixelFormat32bppBGR, WICBitmapDitherTypeNone, nullptr, 0.0,
                                WICBitmapPaletteTypeCustom),
          tried.c_str());
    UINT width = 0;
    UINT height = 0;
    check(converter->GetSize(&width, &height), tried.c_str());
    Pixels picture(static_cast<int>(width), static_cast<int>(height));
    check(converter->CopyPixels(nullptr, width * 4, static_cast<UINT>(picture.rgb.size() * 4),
                                reinterpret_cast<BYTE*>(picture.rgb.data())),
          tried.c_str());
    for (std::uint32_t& pixel : picture.rgb) {
        pixel &= 0xFFFFFFU;
    }
    return picture;
}

void writePng(const std::wstring& file, const Pixels& picture) {
    const std::wstring tried = L"Writing \"" + file + L"\"";
    const ComPtr<IWICImagingFactory> factory = imaging();
    ComPtr<IWICStream> stream;
    ComPtr<IWICBitmapEncoder> encoder;
    ComPtr<IWICBitmapFrameEncode> frame;
    check(factory->CreateStream(stream.GetAddressOf()), tried.c_str());
    check(stream->InitializeFromFilename(file.c_str(), GENERIC_WRITE), tried.c_str());
    check(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.GetAddressOf()), tried.c_str());
    check(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache), tried.c_str());
    check(encoder->CreateNewFrame(frame.GetAddressOf(), nullptr), tried.c_str());
    check(frame->Initialize(nullptr), tried.c_str());
    check(frame->SetSize(static_cast<UINT>(picture.width), static_cast<UINT>(picture.height)), tried.c_str());
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    check(frame->SetPixelFormat(&format), tried.c_str());
    std::vector<BYTE> bytes = packed(picture);
    check(frame->WritePixels(static_cast<UINT>(picture.height), static_cast<UINT>(picture.width) * 3,
                             static_cast<UINT>(bytes.size()), bytes.data()),
          tried.c_str());
    check(frame->Commit(), tried.c_str());
    check(encoder->Commit(), tried.c_str());
}

}  // namespace kv::host
