#pragma once

#include "KxHostGlobal.h"

#include <QHash>
#include <QList>
#include <QMap>

class KxGsObject;

// A manipulator's items by kernel index, with the way back from an item to
// its index kept beside it: finding an item's index is asked for on every
// press, hover and change, so it must not walk every stored item. Reads as a
// QMap<int, KxGsObject*>; every write goes through insert/remove/take/clear,
// which keep both directions in step.
class KX_HOST_EXPORT KxGsObjectMap
{
public:
    using Map = QMap<int, KxGsObject*>;
    using const_iterator = Map::const_iterator;

    // Replaces whatever anIdx held.
    void insert(int anIdx, KxGsObject* anObj);
    int remove(int anIdx);
    KxGsObject* take(int anIdx);
    void clear();

    KxGsObject* value(int anIdx, KxGsObject* aDefault = nullptr) const { return items.value(anIdx, aDefault); }
    bool contains(int anIdx) const { return items.contains(anIdx); }
    // The index anObj is stored under, aDefault when it is not in the map.
    int key(const KxGsObject* anObj, int aDefault = 0) const;
    QList<int> keys() const { return items.keys(); }
    QList<KxGsObject*> values() const { return items.values(); }
    int size() const { return items.size(); }
    int count() const { return items.size(); }
    bool isEmpty() const { return items.isEmpty(); }
    int firstKey() const { return items.firstKey(); }
    int lastKey() const { return items.lastKey(); }

    const_iterator begin() const { return items.cbegin(); }
    const_iterator end() const { return items.cend(); }
    const_iterator cbegin() const { return items.cbegin(); }
    const_iterator cend() const { return items.cend(); }
    const_iterator constBegin() const { return items.cbegin(); }
    const_iterator constEnd() const { return items.cend(); }
    const_iterator find(int anIdx) const { return items.constFind(anIdx); }
    const_iterator constFind(int anIdx) const { return items.constFind(anIdx); }

    operator const Map&() const { return items; }

private:
    void forget(int anIdx, const KxGsObject* anObj);

    Map items;
    // An item may sit under several indices; it answers to the lowest, as a
    // walk in index order would.
    QHash<const KxGsObject*, QMap<int, bool>> indices;
};
