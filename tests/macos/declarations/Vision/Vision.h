#pragma once

// Vision's text recognition. See DeclarationSupport.h.

#include <Foundation/Foundation.h>

@class VNRequest;
typedef NSString *VNImageOption;
typedef void (^VNRequestCompletionHandler)(VNRequest *request, NSError *error);

typedef NS_ENUM(NSInteger, VNRequestTextRecognitionLevel) {
    VNRequestTextRecognitionLevelAccurate = 0,
    VNRequestTextRecognitionLevelFast,
};

@interface VNObservation : NSObject
@end

@interface VNRecognizedText : NSObject
@property (readonly, nonatomic, copy) NSString *string;
@end

@interface VNRecognizedTextObservation : VNObservation
- (NSArray<VNRecognizedText *> *)topCandidates:(NSUInteger)maxCandidateCount;
@end

@interface VNRequest : NSObject
- (void)cancel;
- (instancetype)initWithCompletionHandler:(VNRequestCompletionHandler)completionHandler;
@property (readonly, nonatomic, copy) NSArray<__kindof VNObservation *> *results;
@end

@interface VNImageBasedRequest : VNRequest
@end

@interface VNRecognizeTextRequest : VNImageBasedRequest
@property (readwrite, nonatomic, assign) VNRequestTextRecognitionLevel recognitionLevel;
@property (readwrite, nonatomic, assign) BOOL usesLanguageCorrection;
@property (readwrite, nonatomic, assign) BOOL automaticallyDetectsLanguage ORVESA_SINCE(13.0);
@end

@interface VNImageRequestHandler : NSObject
- (instancetype)initWithCGImage:(CGImageRef)image options:(NSDictionary<VNImageOption, id> *)options;
- (BOOL)performRequests:(NSArray<VNRequest *> *)requests error:(NSError **)error;
@end
