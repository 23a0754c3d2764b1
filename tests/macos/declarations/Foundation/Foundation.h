#pragma once

// Foundation, as far as the adapters use it. See DeclarationSupport.h.

#include <CoreGraphics/CoreGraphics.h>

#include <objc/objc.h>

#include <sys/types.h>

@class NSString;

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef CGRect NSRect;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef double NSTimeInterval;
typedef NSString *NSNotificationName;

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h)
{
    NSRect rect;
    rect.origin.x = x;
    rect.origin.y = y;
    rect.size.width = w;
    rect.size.height = h;
    return rect;
}
static inline NSSize NSMakeSize(CGFloat w, CGFloat h)
{
    NSSize size;
    size.width = w;
    size.height = h;
    return size;
}

@class NSArray<ObjectType>, NSData, NSDictionary<KeyType, ObjectType>, NSError, NSNotification, NSOperationQueue, NSURL;

@protocol NSObject
- (Class)class;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)isEqual:(id)object;
@end
@protocol NSCopying
@end
typedef struct {
    unsigned long state;
    id __unsafe_unretained *itemsPtr;
    unsigned long *mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)len;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
- (instancetype)init;
+ (Class)class;
@end

@interface NSString : NSObject <NSCopying>
@property (readonly) NSUInteger length;
- (BOOL)isEqualToString:(NSString *)aString;
@end

@interface NSValue : NSObject
@end

@interface NSNumber : NSValue
@property (readonly) BOOL boolValue;
@property (readonly) long long longLongValue;
@property (readonly) double doubleValue;
+ (NSNumber *)numberWithBool:(BOOL)value;
+ (NSNumber *)numberWithLongLong:(long long)value;
+ (NSNumber *)numberWithDouble:(double)value;
@end

@interface NSData : NSObject <NSCopying>
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
@property (readonly) NSUInteger count;
@property (nullable, nonatomic, readonly) ObjectType firstObject;
- (ObjectType)objectAtIndex:(NSUInteger)index;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)idx;
+ (instancetype)arrayWithObjects:(const ObjectType __unsafe_unretained[])objects count:(NSUInteger)cnt;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)anObject;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSFastEnumeration>
- (ObjectType)objectForKeyedSubscript:(KeyType)key;
- (BOOL)isEqualToDictionary:(NSDictionary<KeyType, ObjectType> *)otherDictionary;
+ (instancetype)dictionaryWithObjects:(const ObjectType __unsafe_unretained[])objects
                              forKeys:(const KeyType __unsafe_unretained[])keys
                                count:(NSUInteger)cnt;
@end

typedef NSString *NSErrorDomain;
@interface NSError : NSObject
@property (readonly) NSInteger code;
@property (readonly, copy) NSErrorDomain domain;
@property (readonly, copy) NSString *localizedDescription;
@end

@interface NSURL : NSObject
@end

@interface NSBundle : NSObject
@property (class, readonly, strong) NSBundle *mainBundle;
@property (readonly, copy) NSString *bundleIdentifier;
@end

@interface NSLocale : NSObject
@property (class, readonly, copy) NSArray<NSString *> *preferredLanguages;
@end

@interface NSNotificationCenter : NSObject
@property (class, readonly, strong) NSNotificationCenter *defaultCenter;
- (id<NSObject>)addObserverForName:(NSNotificationName)name
                            object:(id)obj
                             queue:(NSOperationQueue *)queue
                        usingBlock:(void (^)(NSNotification *notification))block;
- (void)removeObserver:(id)observer;
@end

extern "C" NSNotificationName const NSUserDefaultsDidChangeNotification;

@interface NSUserDefaults : NSObject
@property (class, readonly, strong) NSUserDefaults *standardUserDefaults;
- (id)objectForKey:(NSString *)defaultName;
- (void)setObject:(id)value forKey:(NSString *)defaultName;
- (void)removeObjectForKey:(NSString *)defaultName;
- (NSDictionary<NSString *, id> *)persistentDomainForName:(NSString *)domainName;
@end
