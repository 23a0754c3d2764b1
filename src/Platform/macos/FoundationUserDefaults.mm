#include "Platform/macos/FoundationUserDefaults.h"

#include "Platform/macos/FoundationValue.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace orvesa {

/// What is known of the domain, and the observer that is told when to look at it again. Both are counted by the
/// compiler; the centre keeps the observer until it is removed.
struct FoundationUserDefaults::Observation {
    NSDictionary<NSString *, id> *known = nil;
    id observer = nil;
};

FoundationUserDefaults::FoundationUserDefaults(QString identifier)
    : m_identifier(std::move(identifier)), m_observation(std::make_unique<Observation>())
{
}

FoundationUserDefaults::~FoundationUserDefaults()
{
    setExternalChangeHandler({});
}

std::optional<DefaultsValue> FoundationUserDefaults::value(const QString &key) const
{
    return FoundationValue::value([NSUserDefaults.standardUserDefaults objectForKey:key.toNSString()]);
}

void FoundationUserDefaults::set(const QString &key, const DefaultsValue &value)
{
    NSUserDefaults *const defaults = NSUserDefaults.standardUserDefaults;
    [defaults setObject:FoundationValue::object(value) forKey:key.toNSString()];
    m_observation->known = [defaults persistentDomainForName:m_identifier.toNSString()];
}

void FoundationUserDefaults::remove(const QString &key)
{
    NSUserDefaults *const defaults = NSUserDefaults.standardUserDefaults;
    [defaults removeObjectForKey:key.toNSString()];
    m_observation->known = [defaults persistentDomainForName:m_identifier.toNSString()];
}

std::optional<DefaultsDictionary> FoundationUserDefaults::persistentDomain(const QString &name) const
{
    NSDictionary<NSString *, id> *const domain =
        [NSUserDefaults.standardUserDefaults persistentDomainForName:name.toNSString()];
    if (domain == nil) {
        return std::nullopt;
    }
    DefaultsDictionary values;
    for (NSString *key in domain) {
        if (const auto value = FoundationValue::value(domain[key])) {
            values.emplace(QString::fromNSString(key), *value);
        }
    }
    return values;
}

void FoundationUserDefaults::setExternalChangeHandler(std::function<void()> handler)
{
    m_handler = std::move(handler);
    NSNotificationCenter *const center = NSNotificationCenter.defaultCenter;
    if (!m_handler && m_observation->observer != nil) {
        [center removeObserver:m_observation->observer];
        m_observation->observer = nil;
    } else if (m_handler && m_observation->observer == nil) {
        m_observation->known = [NSUserDefaults.standardUserDefaults persistentDomainForName:m_identifier.toNSString()];
        m_observation->observer = [center addObserverForName:NSApplicationDidBecomeActiveNotification
                                                      object:nil
                                                       queue:nil
                                                  usingBlock:^(NSNotification *) {
                                                      lookForChanges();
                                                  }];
    }
}

void FoundationUserDefaults::lookForChanges()
{
    NSDictionary<NSString *, id> *const current =
        [NSUserDefaults.standardUserDefaults persistentDomainForName:m_identifier.toNSString()];
    NSDictionary<NSString *, id> *const known = std::exchange(m_observation->known, current);
    if (known == current || [current isEqualToDictionary:known]) {
        return;
    }
    const std::function<void()> handler = m_handler; // it may remove itself
    if (handler) {
        handler();
    }
}

} // namespace orvesa
