#include "Platform/macos/VisionTextRecognition.h"

#include "Platform/macos/BackgroundCall.h"

#import <AppKit/AppKit.h>
#import <Vision/Vision.h>

namespace orvesa {

namespace {

/// The best candidate of every observation, in Vision's order.
QStringList linesOf(NSArray<VNObservation *> *observations)
{
    QStringList lines;
    for (VNObservation *observation in observations) {
        if (![observation isKindOfClass:[VNRecognizedTextObservation class]]) {
            continue;
        }
        VNRecognizedText *const best =
            [static_cast<VNRecognizedTextObservation *>(observation) topCandidates:1].firstObject;
        if (best != nil) {
            lines.append(QString::fromNSString(best.string));
        }
    }
    return lines;
}

/// The request and what came of it, shared by the thread that performs it and the main thread, which may cancel it.
struct Recognition {
    VNRecognizeTextRequest *request = nil;
    std::optional<QStringList> lines;
};

std::shared_ptr<Recognition> makeRecognition()
{
    auto recognition = std::make_shared<Recognition>();
    // The request is part of the recognition, so that its handler must not keep it.
    Recognition *const result = recognition.get();
    VNRecognizeTextRequest *const request =
        [[VNRecognizeTextRequest alloc] initWithCompletionHandler:^(VNRequest *ended, NSError *error) {
            result->lines = error == nil ? std::optional(linesOf(ended.results)) : std::nullopt;
        }];
    request.recognitionLevel = VNRequestTextRecognitionLevelAccurate;
    request.usesLanguageCorrection = YES;
    request.automaticallyDetectsLanguage = YES;
    recognition->request = request;
    return recognition;
}

std::optional<QStringList> perform(const Recognition &recognition, const QString &imagePath)
{
    // A thread of ours has no pool of its own.
    @autoreleasepool {
        NSImage *const image = [[NSImage alloc] initWithContentsOfFile:imagePath.toNSString()];
        const CGImageRef bitmap = [image CGImageForProposedRect:nil context:nil hints:nil]; // lent by the image
        if (bitmap == nullptr) {
            return std::nullopt;
        }
        VNImageRequestHandler *const handler = [[VNImageRequestHandler alloc] initWithCGImage:bitmap options:@{}];
        const bool isPerformed = [handler performRequests:@[ recognition.request ] error:nil];
        return isPerformed ? recognition.lines : std::nullopt;
    }
}

} // namespace

QCoro::Task<std::optional<QStringList>> VisionTextRecognition::recognize(QString imagePath, std::stop_token stop)
{
    const std::shared_ptr<Recognition> recognition = makeRecognition();
    std::function<std::optional<QStringList>()> call = [recognition, imagePath] {
        return perform(*recognition, imagePath);
    };
    std::optional<std::optional<QStringList>> lines =
        co_await callInBackground(std::move(call), bound, std::move(stop));
    if (!lines) {
        [recognition->request cancel]; // which ends the thread soon
        co_return std::nullopt;
    }
    co_return std::move(*lines);
}

} // namespace orvesa
