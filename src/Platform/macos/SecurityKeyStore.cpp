#include "Platform/macos/SecurityKeyStore.h"

#include "Platform/SecretBuffer.h"
#include "Platform/macos/BackgroundCall.h"
#include "Platform/macos/CFConversion.h"

#include <Security/Security.h>

#include <optional>
#include <utility>

namespace orvesa {

namespace {

using CFConversion::dictionary;
using CFConversion::string;

/// The texts of a query, owned while dictionaries are made of them.
struct QueryTexts {
    explicit QueryTexts(const KeyStoreQuery &query) : service(string(query.service)), account(string(query.account)) {}

    CFOwner<CFStringRef> service;
    CFOwner<CFStringRef> account;
};

CFOwner<CFDictionaryRef> baseQuery(const QueryTexts &texts)
{
    return dictionary({{kSecClass, kSecClassGenericPassword},
                       {kSecAttrService, texts.service.get()},
                       {kSecAttrAccount, texts.account.get()}});
}

KeyStoreCopyResult copyItem(const KeyStoreQuery &query)
{
    const QueryTexts texts(query);
    const CFOwner<CFDictionaryRef> item = dictionary({{kSecClass, kSecClassGenericPassword},
                                                      {kSecAttrService, texts.service.get()},
                                                      {kSecAttrAccount, texts.account.get()},
                                                      {kSecReturnData, kCFBooleanTrue},
                                                      {kSecMatchLimit, kSecMatchLimitOne}});
    CFOwner<CFTypeRef> found;
    const OSStatus status = SecItemCopyMatching(item.get(), found.receiver());
    if (status != KeyStoreStatus::success) {
        return {.status = status, .data = {}};
    }
    if (!found || CFGetTypeID(found.get()) != CFDataGetTypeID()) {
        return {.status = KeyStoreStatus::itemNotFound, .data = {}};
    }
    return {.status = status, .data = CFConversion::bytes(static_cast<CFDataRef>(found.get()))};
}

qint32 updateItem(const KeyStoreQuery &query, const QByteArray &data)
{
    const QueryTexts texts(query);
    const CFOwner<CFDataRef> secret = CFConversion::data(data);
    const CFOwner<CFDictionaryRef> item = baseQuery(texts);
    const CFOwner<CFDictionaryRef> change = dictionary({{kSecValueData, secret.get()}});
    return SecItemUpdate(item.get(), change.get());
}

qint32 addItem(const KeyStoreQuery &query, const QByteArray &data)
{
    const QueryTexts texts(query);
    const CFOwner<CFDataRef> secret = CFConversion::data(data);
    const CFOwner<CFDictionaryRef> item = dictionary({{kSecClass, kSecClassGenericPassword},
                                                      {kSecAttrService, texts.service.get()},
                                                      {kSecAttrAccount, texts.account.get()},
                                                      {kSecValueData, secret.get()}});
    return SecItemAdd(item.get(), nullptr);
}

qint32 deleteItem(const KeyStoreQuery &query)
{
    const QueryTexts texts(query);
    const CFOwner<CFDictionaryRef> item = baseQuery(texts);
    return SecItemDelete(item.get());
}

} // namespace

SecurityKeyStore::SecurityKeyStore(std::chrono::milliseconds bound) : m_bound(bound) {}

SecurityKeyStore::~SecurityKeyStore()
{
    SecurityKeyStore::close();
}

void SecurityKeyStore::close()
{
    m_closing.request_stop();
}

QCoro::Task<KeyStoreCopyResult> SecurityKeyStore::copyMatching(KeyStoreQuery query)
{
    std::function<KeyStoreCopyResult()> call = [query] { return copyItem(query); };
    const std::stop_token closing = m_closing.get_token();
    std::optional<KeyStoreCopyResult> answer = co_await callInBackground(std::move(call), m_bound, closing);
    if (!answer) {
        answer = KeyStoreCopyResult{.status = unanswered(), .data = {}};
    }
    co_return std::move(*answer);
}

QCoro::Task<qint32> SecurityKeyStore::update(KeyStoreQuery query, QByteArray data)
{
    return status([query, data]() mutable {
        const SecretClearing clearing(data);
        return updateItem(query, data);
    });
}

QCoro::Task<qint32> SecurityKeyStore::add(KeyStoreQuery query, QByteArray data)
{
    return status([query, data]() mutable {
        const SecretClearing clearing(data);
        return addItem(query, data);
    });
}

QCoro::Task<qint32> SecurityKeyStore::remove(KeyStoreQuery query)
{
    return status([query] { return deleteItem(query); });
}

QCoro::Task<qint32> SecurityKeyStore::status(std::function<qint32()> call)
{
    const std::stop_token closing = m_closing.get_token();
    const std::optional<qint32> answer = co_await callInBackground(std::move(call), m_bound, closing);
    co_return answer ? *answer : unanswered();
}

qint32 SecurityKeyStore::unanswered() const
{
    return m_closing.stop_requested() ? KeyStoreStatus::userCanceled : KeyStoreStatus::interactionNotAllowed;
}

} // namespace orvesa
