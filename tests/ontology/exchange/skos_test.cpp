#include "ontology/edit/edit_fixture.h"
#include "ontology/exchange/skos.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <set>

using namespace lx;

namespace {

using Triples = std::set<QString>;

// serdi writes N-Triples in ASCII: its \\u and \\U escapes back to the characters, so that
// tests compare text as stored.
QString DecodeUnicodeEscapes(const QString &line)
{
    QString out;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const qsizetype digits = line[i] != u'\\' || i + 1 >= line.size() ? 0
                                 : line[i + 1] == u'u'                    ? 4
                                 : line[i + 1] == u'U'                    ? 8
                                                                          : 0;
        if (digits == 0 || i + 1 + digits >= line.size()) {
            out += line[i];
            if (line[i] == u'\\' && i + 1 < line.size())
                out += line[++i]; // an escaped backslash is not the start of an escape
            continue;
        }
        const char32_t code = char32_t(line.mid(i + 2, digits).toUInt(nullptr, 16));
        out += QString::fromUcs4(&code, 1);
        i += 1 + digits;
    }
    return out;
}

// The N-Triples lines of a Turtle file as an RDF parser reads it; fails the test when the
// parser refuses the file.
Triples ParseTurtle(const QString &path)
{
    QProcess serdi;
    serdi.start(QStringLiteral("serdi"), {QStringLiteral("-i"), QStringLiteral("turtle"),
                                          QStringLiteral("-o"), QStringLiteral("ntriples"), path});
    EXPECT_TRUE(serdi.waitForFinished(60000));
    EXPECT_EQ(serdi.exitCode(), 0) << serdi.readAllStandardError().toStdString();
    Triples triples;
    for (const QString &line : QString::fromUtf8(serdi.readAllStandardOutput()).split(u'\n')) {
        if (!line.trimmed().isEmpty())
            triples.insert(DecodeUnicodeEscapes(line.trimmed()));
    }
    return triples;
}

// ALL at the top; ANIMAL with two English names (one given twice) and a German one, a definition
// and a note; BIRD below ANIMAL eating ANIMAL and coloured red; EATS and EATEN-BY inverse
// relations; the attribute COLOR; two subsets.
class SkosTest : public EditTest {
protected:
    void SetUp() override
    {
        EditTest::SetUp();
        if (QStandardPaths::findExecutable(QStringLiteral("serdi")).isEmpty())
            GTEST_SKIP() << "serdi is not installed (Debian package serdi): the Turtle can't be "
                            "checked by an RDF parser";
        addSubset(2, QStringLiteral("Birds"));
        add(QStringLiteral("ALL"), 100, QStringLiteral("Undefined"), 1);
        add(QStringLiteral("ANIMAL"), 1, QStringLiteral("A living being"), 1);
        add(QStringLiteral("BIRD"), 1, QVariant(), 2);
        add(QStringLiteral("EATS"), 4, QVariant(), 1);
        add(QStringLiteral("EATEN-BY"), 4, QVariant(), 1);
        add(QStringLiteral("COLOR"), 3, QVariant(), 1);
        add(QStringLiteral("RANGE"), 14, QVariant(), 1);
        isa("ANIMAL", "ALL");
        isa("BIRD", "animal"); // another case than the concept's own row
        for (const auto &[lang, name] :
             {std::pair{"en", "animal"}, {"de", "Tier"}, {"en", "beast"}, {"EN", "animal"}})
            addRow(QStringLiteral("Names"), {{u"Concept", QStringLiteral("ANIMAL")},
                                             {u"Lang_ID", QString::fromLatin1(lang)},
                                             {u"Name", QString::fromLatin1(name)}});
        addRow(QStringLiteral("Notes"), {{u"Concept", QStringLiteral("ANIMAL")},
                                         {u"Note", QStringLiteral("check")},
                                         {u"Date", QDateTime::currentDateTime()}});
        addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("BIRD")},
                                             {u"Rel", QStringLiteral("EATS")},
                                             {u"Concept2", QStringLiteral("ANIMAL")},
                                             {u"Default", false}});
        addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("EATS")},
                                             {u"Rel", QStringLiteral("RANGE")},
                                             {u"Concept2", QStringLiteral("ANIMAL")},
                                             {u"Default", false}});
        addRow(QStringLiteral("ATTRIBUTES"), {{u"Concept", QStringLiteral("BIRD")},
                                              {u"Attribute", QStringLiteral("COLOR")},
                                              {u"Value", QStringLiteral("red")},
                                              {u"Default", true}});
        addRow(QStringLiteral("INVERSES"),
               {{u"Relation", QStringLiteral("EATS")}, {u"Inverse", QStringLiteral("EATEN-BY")}});
        addRow(QStringLiteral("MetaData"), {{u"Name", QStringLiteral("Zoo")},
                                            {u"Author", QStringLiteral("Ann")},
                                            {u"Owner", QString()},
                                            {u"Contact", QString()},
                                            {u"Description", QString()}});
    }
    void add(const QString &id, int type, const QVariant &definition, int subset)
    {
        addRow(QStringLiteral("CONCEPTS"), {{u"Concept", id},
                                            {u"Definition", definition},
                                            {u"Type", type},
                                            {u"Subset_ID", subset}});
    }
    void isa(const char *child, const char *parent)
    {
        addRow(QStringLiteral("ISA"),
               {{u"Concept", QString::fromLatin1(child)}, {u"ISA", QString::fromLatin1(parent)}});
    }
    Triples exported(const QString &base = QStringLiteral("http://ex.org/zoo/"))
    {
        const QString path = folder.path(QStringLiteral("out.ttl"));
        WriteSkosFile(path, base);
        return ParseTurtle(path);
    }
};

TEST_F(SkosTest, TheTriplesOfASmallOntologyAreTheExpectedOnes)
{
    const char *const s = "<http://www.w3.org/2004/02/skos/core#";
    const char *const rdf = "<http://www.w3.org/1999/02/22-rdf-syntax-ns#type>";
    Triples expected;
    const auto t = [&](const QString &subject, const QString &predicate, const QString &object) {
        expected.insert(subject + u' ' + predicate + u' ' + object + QStringLiteral(" ."));
    };
    const auto skos = [s](const char *term) {
        return QLatin1String(s) + QLatin1String(term) + u'>';
    };
    const auto c = [](const char *id) {
        return QStringLiteral("<http://ex.org/zoo/concept/%1>").arg(QLatin1String(id));
    };
    const auto rel = [](const char *id) {
        return QStringLiteral("<http://ex.org/zoo/relation/%1>").arg(QLatin1String(id));
    };
    const QString scheme = QStringLiteral("<http://ex.org/zoo/>");
    const QString attr = QStringLiteral("<http://ex.org/zoo/attribute/COLOR>");
    const QString owl = QStringLiteral("<http://www.w3.org/2002/07/owl#");
    const QString rdfs = QStringLiteral("<http://www.w3.org/2000/01/rdf-schema#");
    const QString dct = QStringLiteral("<http://purl.org/dc/terms/");

    t(scheme, rdf, skos("ConceptScheme"));
    t(scheme, dct + "title>", "\"Zoo\"");
    t(scheme, dct + "creator>", "\"Ann\"");
    t(scheme, skos("hasTopConcept"), c("ALL"));
    for (const char *id : {"ALL", "ANIMAL", "BIRD", "EATS", "EATEN-BY", "COLOR", "RANGE"}) {
        t(c(id), rdf, skos("Concept"));
        t(c(id), skos("inScheme"), scheme);
        t(c(id), skos("notation"), QStringLiteral("\"%1\"").arg(QLatin1String(id)));
    }
    t(c("ALL"), skos("topConceptOf"), scheme);
    t(c("ANIMAL"), skos("broader"), c("ALL"));
    t(c("ALL"), skos("narrower"), c("ANIMAL"));
    t(c("BIRD"), skos("broader"), c("ANIMAL"));
    t(c("ANIMAL"), skos("narrower"), c("BIRD"));
    t(c("ANIMAL"), skos("prefLabel"), "\"animal\"@en");
    t(c("ANIMAL"), skos("altLabel"), "\"beast\"@en");
    t(c("ANIMAL"), skos("prefLabel"), "\"Tier\"@de");
    t(c("ANIMAL"), skos("definition"), "\"A living being\"");
    t(c("ANIMAL"), skos("editorialNote"), "\"check\"");
    t(c("BIRD"), rel("EATS"), c("ANIMAL"));
    t(c("BIRD"), attr, "\"red\"");
    for (const char *id : {"EATS", "EATEN-BY"}) {
        t(rel(id), rdf, owl + "ObjectProperty>");
        t(rel(id), rdfs + "subPropertyOf>", skos("related"));
        t(rel(id), rdfs + "label>", QStringLiteral("\"%1\"").arg(QLatin1String(id)));
        t(rel(id), rdfs + "isDefinedBy>", c(id));
    }
    t(rel("EATS"), owl + "inverseOf>", rel("EATEN-BY"));
    t(attr, rdf, owl + "DatatypeProperty>");
    t(attr, rdfs + "label>", "\"COLOR\"");
    t(attr, rdfs + "isDefinedBy>", c("COLOR"));
    for (const auto &[id, name] : {std::pair{1, "General"}, {2, "Birds"}}) {
        const QString set = QStringLiteral("<http://ex.org/zoo/subset/%1>").arg(id);
        t(set, rdf, skos("Collection"));
        t(set, skos("prefLabel"), QStringLiteral("\"%1\"").arg(QLatin1String(name)));
    }
    for (const char *id : {"ALL", "ANIMAL", "EATS", "EATEN-BY", "COLOR", "RANGE"})
        t(QStringLiteral("<http://ex.org/zoo/subset/1>"), skos("member"), c(id));
    t(QStringLiteral("<http://ex.org/zoo/subset/2>"), skos("member"), c("BIRD"));

    const Triples actual = exported();
    for (const QString &line : actual)
        EXPECT_TRUE(expected.count(line)) << "unexpected: " << line.toStdString();
    for (const QString &line : expected)
        EXPECT_TRUE(actual.count(line)) << "missing: " << line.toStdString();
}

TEST_F(SkosTest, QuotesBackslashesLineBreaksAndNonAsciiSurviveTheParser)
{
    const QString odd = QStringLiteral("CAFÉ NOIR<1>");
    add(odd, 1, QStringLiteral("Line one\r\nsaid \"hi\" \\ back\tslash é 日本"), 1);
    addRow(QStringLiteral("Names"), {{u"Concept", odd},
                                     {u"Lang_ID", QStringLiteral("fr")},
                                     {u"Name", QStringLiteral("café « \"noir\" » \\")}});
    // A base with a space and braces still gives IRIs the parser accepts.
    const Triples triples = exported(QStringLiteral("http://ex.org/a b{c}"));
    const QString subject =
        QStringLiteral("<http://ex.org/a%20b%7Bc%7D/concept/CAF%C3%89%20NOIR%3C1%3E>");
    const QString skos = QStringLiteral(" <http://www.w3.org/2004/02/skos/core#");
    EXPECT_TRUE(triples.count(subject + skos +
                              QStringLiteral("definition> \"Line one\\r\\nsaid \\\"hi\\\" \\\\ "
                                             "back\\tslash é 日本\" .")));
    EXPECT_TRUE(triples.count(subject + skos +
                              QStringLiteral("prefLabel> \"café « \\\"noir\\\" » \\\\\"@fr .")));
    EXPECT_TRUE(triples.count(subject + skos + QStringLiteral("notation> \"CAFÉ NOIR<1>\" .")));
}

TEST(SkosText, IdentifiersArePercentEncodedAsUtf8AndControlCharactersEscaped)
{
    EXPECT_EQ(IriSegment(QStringLiteral("HAS-PART_2.x~")), QStringLiteral("HAS-PART_2.x~"));
    EXPECT_EQ(IriSegment(QStringLiteral("*NOTHING*")), QStringLiteral("%2ANOTHING%2A"));
    EXPECT_EQ(IriSegment(QStringLiteral("a/b%é")), QStringLiteral("a%2Fb%25%C3%A9"));
    EXPECT_EQ(TurtleString(QStringLiteral("a\x01z")), QStringLiteral("\"a\\u0001z\""));
    EXPECT_EQ(DefaultSkosBase(QStringLiteral("My Zoo")),
              QStringLiteral("http://example.org/My%20Zoo/"));
    EXPECT_EQ(DefaultSkosBase(QString()), QStringLiteral("http://example.org/ontology/"));
}

} // namespace
