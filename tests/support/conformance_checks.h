#pragma once

#include "document_conformance.h"

// The groups that ConformanceChecks() puts together. Private to the suite.
QVector<ConformanceCheck> TreeConformanceChecks();
QVector<ConformanceCheck> PageConformanceChecks();
QVector<ConformanceCheck> ContentConformanceChecks();
QVector<ConformanceCheck> AttachmentConformanceChecks();
QVector<ConformanceCheck> TextConformanceChecks();
QVector<ConformanceCheck> LinkConformanceChecks();
QVector<ConformanceCheck> StateConformanceChecks();

// The document that most checks begin with.
QString ConformanceFixture();
