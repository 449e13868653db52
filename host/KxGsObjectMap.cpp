#include "KxGsObjectMap.h"

void KxGsObjectMap::insert(int anIdx, KxGsObject* anObj)
{
    const auto old = items.constFind(anIdx);
    if (old != items.cend())
        forget(anIdx, old.value());
    items.insert(anIdx, anObj);
    indices[anObj].insert(anIdx, true);
}

int KxGsObjectMap::remove(int anIdx)
{
    const auto it = items.find(anIdx);
    if (it == items.end())
        return 0;
    forget(anIdx, it.value());
    items.erase(it);
    return 1;
}

KxGsObject* KxGsObjectMap::take(int anIdx)
{
    const auto it = items.find(anIdx);
    if (it == items.end())
        return nullptr;
    KxGsObject* obj = it.value();
    forget(anIdx, obj);
    items.erase(it);
    return obj;
}

void KxGsObjectMap::clear()
{
    items.clear();
    indices.clear();
}

int KxGsObjectMap::key(const KxGsObject* anObj, int aDefault) const
{
    const auto it = indices.constFind(anObj);
    return it == indices.cend() || it->isEmpty() ? aDefault : it->firstKey();
}

void KxGsObjectMap::forget(int anIdx, const KxGsObject* anObj)
{
    const auto it = indices.find(anObj);
    if (it == indices.end())
        return;
    it->remove(anIdx);
    if (it->isEmpty())
        indices.erase(it);
}
