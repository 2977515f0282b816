import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.ArrayList;
import java.util.List;
import java.util.TreeMap;

/**
 * Prints "method export-name" for every native method of a class, with the JNI names
 * computed here from the class itself by the JNI naming rules: an
 * independent check of the names that the generator gives the natives.
 */
public final class ListNatives {
  private ListNatives() {}

  static String mangle(String s) {
    StringBuilder b = new StringBuilder();
    for (char c : s.toCharArray()) {
      if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) {
        b.append(c);
      } else if (c == '/' || c == '.') {
        b.append('_');
      } else if (c == '_') {
        b.append("_1");
      } else if (c == ';') {
        b.append("_2");
      } else if (c == '[') {
        b.append("_3");
      } else {
        b.append(String.format("_0%04x", (int) c));
      }
    }
    return b.toString();
  }

  static String descriptor(Class<?> t) {
    if (t.isArray()) {
      return "[" + descriptor(t.getComponentType());
    }
    if (t == int.class) {
      return "I";
    }
    if (t == double.class) {
      return "D";
    }
    if (t == float.class) {
      return "F";
    }
    if (t == long.class) {
      return "J";
    }
    if (t == boolean.class) {
      return "Z";
    }
    return "L" + t.getName().replace('.', '/') + ";";
  }

  public static void main(String[] args) throws Exception {
    Class<?> c = Class.forName(args[0], false, ListNatives.class.getClassLoader());
    TreeMap<String, List<Method>> natives = new TreeMap<>();
    for (Method m : c.getDeclaredMethods()) {
      if (Modifier.isNative(m.getModifiers())) {
        natives.computeIfAbsent(m.getName(), k -> new ArrayList<>()).add(m);
      }
    }
    String prefix = "Java_" + mangle(c.getName().replace('.', '/')) + "_";
    for (List<Method> overloads : natives.values()) {
      for (Method m : overloads) {
        String name = prefix + mangle(m.getName());
        if (overloads.size() > 1) {
          StringBuilder sig = new StringBuilder();
          for (Class<?> p : m.getParameterTypes()) {
            sig.append(descriptor(p));
          }
          name += "__" + mangle(sig.toString());
        }
        System.out.println(m.getName() + " " + name);
      }
    }
  }
}
