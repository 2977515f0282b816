import java.lang.invoke.MethodType;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.ArrayList;
import java.util.List;
import java.util.TreeMap;

/**
 * Prints "method export-name" for every native method of a class, with the JNI names
 * computed here from the class itself (descriptors from the virtual machine's own
 * MethodType): an independent check of the names that the generator gives the natives.
 */
public final class ListNatives {
  private ListNatives() {}

  static String mangle(String s) {
    StringBuilder b = new StringBuilder();
    for (char c : s.toCharArray()) {
      int k = "/._;[".indexOf(c);
      if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) {
        b.append(c);
      } else if (k >= 0) {
        b.append(new String[] {"_", "_", "_1", "_2", "_3"}[k]);
      } else {
        b.append(String.format("_0%04x", (int) c));
      }
    }
    return b.toString();
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
          String d = MethodType.methodType(m.getReturnType(), m.getParameterTypes())
                         .toMethodDescriptorString();
          name += "__" + mangle(d.substring(1, d.indexOf(')')));
        }
        System.out.println(m.getName() + " " + name);
      }
    }
  }
}
