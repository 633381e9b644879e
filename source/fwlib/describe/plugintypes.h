// SPDX-License-Identifier: MIT
// A plugin from a list of classes: its factory, its description, and its two exported functions.
//
//   FWLIB_PLUGIN(EFilter, ERate, QReading)     once in a plugin, in any namespace
//
// Each class has TypeName and Meaning (element.h). An element class without Declare is not described. If two classes have
// the same name, the first one is used. A class whose TypeName is null is never created. The list may be empty.
#ifndef FWLIB_DESCRIBE_PLUGINTYPES_H
#define FWLIB_DESCRIBE_PLUGINTYPES_H

#include "fwlib/describe/declaration.h"
#include "fwlib/elements/eobject.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/export.h"
#include "fwlib/framework/entry.h"
#include "fwlib/framework/factory.h"
#include "fwlib/types.h"
#include "fwlib/version.h"

#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace VESK {

// Creates objects of one class, and describes it.
template <class T>
class PluginType {
    static_assert(std::is_base_of<EObject, T>::value || std::is_base_of<QObject, T>::value,
                  "a plugin's types are classes of elements and data objects");

public:
    // A new object owned by the caller; null for another name and when there is not enough memory.
    template <class Base>
    static Base* Create(const char* pchType) {
        return CreateAs<Base>(std::is_base_of<Base, T>(), pchType);
    }
    static int Describe(DescriptionTable& cTable) {
        return DescribeAs(cTable, std::is_base_of<QObject, T>(), static_cast<T*>(nullptr), 0);
    }

private:
    static bool IsNamed(const char* pchName, const char* pchType) {
        return pchName && pchType && std::strcmp(pchName, pchType) == 0;
    }
    template <class Base>
    static Base* CreateAs(std::true_type, const char* pchType) {
        if (!IsNamed(T::TypeName, pchType)) {
            return nullptr;
        }
        T* const pObject = new (std::nothrow) T;
        if (pObject &&
            pObject->m_cProperties.GetNumberOfProperties() == 0) { // there was no memory for its type's name
            delete pObject;
            return nullptr;
        }
        return pObject;
    }
    template <class Base>
    static Base* CreateAs(std::false_type, const char*) {
        return nullptr;
    }
    template <class Class>
    static auto DescribeAs(DescriptionTable& cTable, std::false_type, Class*, int)
        -> decltype(Class::Declare(std::declval<Declaration<Class>&>()), int()) {
        Declaration<Class> cDeclaration;
        Class::Declare(cDeclaration);
        constexpr bool Originates = !std::is_same<decltype(&Class::Run), int (EObject::*)()>::value;
        return cTable.AddElement(Class::TypeName, Class::Meaning, Originates, cDeclaration);
    }
    template <class Class>
    static int DescribeAs(DescriptionTable&, std::false_type, Class*, long) {
        return 1;
    }
    template <class Class>
    static int DescribeAs(DescriptionTable& cTable, std::true_type, Class*, int) {
        return cTable.AddObject(Class::TypeName, Class::Meaning);
    }
};

// The same for a list of classes.
template <class... Classes>
class PluginTypes;

template <>
class PluginTypes<> {
public:
    template <class Base>
    static Base* Create(const char*) {
        return nullptr;
    }
    static int Describe(DescriptionTable&) { return 1; }
};

template <class First, class... Others>
class PluginTypes<First, Others...> {
public:
    template <class Base>
    static Base* Create(const char* pchType) {
        Base* const pObject = PluginType<First>::template Create<Base>(pchType);
        return pObject ? pObject : PluginTypes<Others...>::template Create<Base>(pchType);
    }
    static int Describe(DescriptionTable& cTable) {
        return PluginType<First>::Describe(cTable) && PluginTypes<Others...>::Describe(cTable);
    }
};

// Creates the elements and data objects of the list.
template <class... Classes>
class TypesFactory : public LibraryFactory {
public:
    EObject* CreateElement(char* pchType) override {
        return PluginTypes<Classes...>::template Create<EObject>(pchType);
    }
    QObject* CreateQObject(char* pchType) override {
        return PluginTypes<Classes...>::template Create<QObject>(pchType);
    }
};

template <class... Classes>
using ElementFactory = TypesFactory<Classes...>;
template <class... Classes>
using ObjectFactory = TypesFactory<Classes...>;

// Returns the description of the list, made at the first call and lent while the plugin is loaded; null when there is not
// enough memory. Hidden: otherwise plugins with classes of the same names would share it, and none would be unloaded.
template <class... Classes>
__attribute__((visibility("hidden"))) const PluginDescription* DescribeTypes() {
    struct Described : DescriptionTable {
        Described() : pDescription(PluginTypes<Classes...>::Describe(*this) ? Get(FWLIB_VERSION) : nullptr) {}

        const PluginDescription* pDescription;
    };
    static const Described cDescribed;
    return cDescribed.pDescription;
}

} // namespace VESK

#define FWLIB_PLUGIN(...)                                                                                    \
    extern "C" FWLIB_EXPORT VESK::Factory* GetFactory() {                                                    \
        static VESK::TypesFactory<__VA_ARGS__> cFactory;                                                     \
        return &cFactory;                                                                                    \
    }                                                                                                        \
    extern "C" FWLIB_EXPORT const VESK::PluginDescription* GetPluginDescription() {                          \
        return VESK::DescribeTypes<__VA_ARGS__>();                                                           \
    }

#endif
