#pragma once

// Login items. See DeclarationSupport.h.

#include <Foundation/Foundation.h>

typedef NS_ENUM(NSInteger, SMAppServiceStatus){
    SMAppServiceStatusNotRegistered,
    SMAppServiceStatusEnabled,
    SMAppServiceStatusRequiresApproval,
    SMAppServiceStatusNotFound,
};

ORVESA_SINCE(13.0)
@interface SMAppService : NSObject
@property (class, readonly, strong) SMAppService *mainAppService;
@property (readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError **)error;
- (BOOL)unregisterAndReturnError:(NSError **)error;
@end
