// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/TransferWork.h"

#include <proxy.h>

namespace brevok {

namespace {

struct FreeFactory {
    void operator()(pxProxyFactory *factory) const { px_proxy_factory_free(factory); }
};
struct FreeList {
    void operator()(char **list) const { px_proxy_factory_free_proxies(list); }
};

} // namespace

QByteArray systemProxyFor(const QUrl &url)
{
    const std::unique_ptr<pxProxyFactory, FreeFactory> factory(px_proxy_factory_new());
    const QByteArray address = url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    const std::unique_ptr<char *, FreeList> list(
        factory ? px_proxy_factory_get_proxies(factory.get(), address.constData()) : nullptr);
    const QByteArray best = list && *list != nullptr ? QByteArray(*list) : QByteArray();
    if (best.startsWith("socks://") || best.startsWith("socks5://")) {
        return "socks5h" + best.sliced(best.indexOf(':')); // the proxy resolves the names
    }
    return best == "direct://" ? QByteArray() : best;
}

} // namespace brevok
