#include "ModelShrinkHelper.h"

QVector<ModelActionHelper> ModelShrinkHelper::shrink(const QVector<ModelActionHelper>& aFailing, const Fails& aFails,
                                                     int aMaxRuns)
{
    QVector<ModelActionHelper> current = aFailing;
    int runs = 0;
    int chunks = 2;
    while (current.size() >= 2 && runs < aMaxRuns) {
        const int chunk = (current.size() + chunks - 1) / chunks;
        bool reduced = false;
        for (int start = 0; start < current.size() && runs < aMaxRuns; start += chunk) {
            // The complement of one chunk: the list without it.
            QVector<ModelActionHelper> candidate = current.mid(0, start) + current.mid(start + chunk);
            ++runs;
            if (!candidate.isEmpty() && aFails(candidate)) {
                current = candidate;
                chunks = qMax(chunks - 1, 2);
                reduced = true;
                break;
            }
        }
        if (!reduced) {
            if (chunk <= 1)
                break;
            chunks = qMin(chunks * 2, current.size());
        }
    }
    return current;
}
