// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "updates/Appcast.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "updates/UpdateErrors.h"

#include <QXmlStreamReader>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// The namespace of the feed form; an identifier, not an address.
constexpr auto updateNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle"_L1;
constexpr auto thisSystem = "linux"_L1;
constexpr qsizetype valueLimit = 128;

// All text inside the current element, without its tags.
QString textOfElement(QXmlStreamReader &xml)
{
    QString text;
    for (int depth = 1; depth > 0 && !xml.atEnd();) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            ++depth;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::Characters:
            text += xml.text();
            break;
        default:
            break;
        }
    }
    return text.trimmed();
}

// What names a version is short; anything else is none.
QString shortText(const QString &text)
{
    return text.size() <= valueLimit ? oneLine(text) : QString();
}

QUrl addressFrom(const QString &text)
{
    return QUrl(text.trimmed(), QUrl::StrictMode);
}

void keep(QString &value, const QString &text)
{
    if (value.isEmpty()) {
        value = shortText(text.trimmed());
    }
}

// Whether it is for this system: what names none may be anything.
bool readEnclosure(const QXmlStreamAttributes &attributes, AppcastItem &item)
{
    const auto own = [&attributes](QLatin1StringView name) {
        return attributes.value(updateNamespace, name).toString();
    };
    if (own("os"_L1) != thisSystem) {
        return false;
    }
    item.address = addressFrom(attributes.value(u"url"_s).toString());
    bool isNumber = false;
    const qint64 length = attributes.value(u"length"_s).toLongLong(&isNumber);
    item.length = isNumber ? length : -1;
    item.signature = own("edSignature"_L1).toLatin1();
    keep(item.version, own("version"_L1));
    keep(item.displayVersion, own("shortVersionString"_L1));
    return true;
}

void readOwnElement(QXmlStreamReader &xml, AppcastItem &item)
{
    const QString name = xml.name().toString();
    const QString text = textOfElement(xml);
    if (name == "version"_L1) {
        keep(item.version, text);
    } else if (name == "shortVersionString"_L1) {
        keep(item.displayVersion, text);
    } else if (name == "minimumSystemVersion"_L1) {
        keep(item.minimumSystemVersion, text);
    } else if (name == "channel"_L1) {
        item.channel = text;
    } else if (name == "releaseNotesLink"_L1 && item.releaseNotesLink.isEmpty()) {
        item.releaseNotesLink = addressFrom(text);
    }
}

// Nothing for an item that is for other systems.
std::optional<AppcastItem> readItem(QXmlStreamReader &xml)
{
    AppcastItem item;
    bool isForUs = false;
    while (xml.readNextStartElement()) {
        if (xml.namespaceUri() == updateNamespace) {
            readOwnElement(xml, item);
        } else if (xml.name() == "description"_L1) {
            item.description = textOfElement(xml);
        } else {
            if (xml.name() == "enclosure"_L1 && !isForUs) {
                isForUs = readEnclosure(xml.attributes(), item);
            }
            xml.skipCurrentElement();
        }
    }
    return isForUs ? std::optional(item) : std::nullopt;
}

QList<AppcastItem> readChannels(QXmlStreamReader &xml)
{
    QList<AppcastItem> items;
    while (xml.readNextStartElement()) {
        if (xml.name() != "channel"_L1) {
            xml.skipCurrentElement();
            continue;
        }
        while (xml.readNextStartElement()) {
            if (xml.name() != "item"_L1) {
                xml.skipCurrentElement();
            } else if (const std::optional<AppcastItem> item = readItem(xml)) {
                items.append(*item);
            }
        }
    }
    return items;
}

// Up to the root element: a document type ends the reading before anything that it defines is used.
void readProlog(QXmlStreamReader &xml)
{
    while (!xml.atEnd() && xml.readNext() != QXmlStreamReader::StartElement) {
        if (xml.isDTD()) {
            xml.raiseError(u"A document type is not allowed."_s);
        }
    }
    if (!xml.hasError() && xml.name() != "rss"_L1) {
        xml.raiseError(u"The root element is not \"rss\"."_s);
    }
}

} // namespace

QList<AppcastItem> parseAppcast(const QByteArray &feed, std::optional<BrevokError> *error)
{
    QList<AppcastItem> items;
    QXmlStreamReader xml;
    if (feed.size() > appcastSizeLimit) {
        xml.raiseError(u"More than %1 bytes."_s.arg(appcastSizeLimit));
    } else {
        xml.addData(feed);
        readProlog(xml);
        items = readChannels(xml);
    }
    while (!xml.atEnd()) {
        xml.readNext();
    }
    if (xml.hasError()) {
        *error = updateError(
            UpdateError::UnreadableFeed, Texts::tr("The description of available updates cannot be read."));
        (*error)->details = {
            {u"Reason"_s, xml.errorString()}, {u"Line"_s, QString::number(xml.lineNumber())}};
        return {};
    }
    return items;
}

} // namespace brevok
