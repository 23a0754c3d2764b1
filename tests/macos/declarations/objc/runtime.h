#pragma once

// What the Objective-C runtime lets a program add to a class. See DeclarationSupport.h.

#include <objc/objc.h>

extern "C" {

typedef struct objc_method *Method;
typedef void (*IMP)(void);

Method class_getInstanceMethod(Class cls, SEL name);
const char *method_getTypeEncoding(Method m);
BOOL class_addMethod(Class cls, SEL name, IMP imp, const char *types);

} // extern "C"
