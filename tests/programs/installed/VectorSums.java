// Loops that Java's compiler turns into vector code once they have run often. Their results do not depend on that.
public class VectorSums {
  private static final int[] a = new int[4001], b = new int[4001], c = new int[4001];
  private static final double[] x = new double[4001], y = new double[4001];

  private static long integers() {
    for (int i = 0; i < a.length; ++i) c[i] = a[i] * b[i] + (a[i] ^ b[i]) - (b[i] >> 3);
    long digest = 0;
    for (int i = 0; i < c.length; ++i) digest = digest * 31 + c[i];
    return digest;
  }

  private static int sum() {
    int sum = 0;
    for (int i = 0; i < a.length; ++i) sum += a[i];
    return sum;
  }

  private static long doubles() {
    for (int i = 0; i < x.length; ++i) y[i] = x[i] * 1.5 + y[i] * 0.25;
    long digest = 0;
    for (int i = 0; i < y.length; ++i) digest = digest * 31 + Double.doubleToRawLongBits(y[i]);
    return digest;
  }

  public static void main(String[] arguments) {
    for (int i = 0; i < a.length; ++i) {
      a[i] = i * 2654435;
      b[i] = i * 40503 ^ 0x5555;
      x[i] = i / 7.0;
    }
    long digest = 0;
    for (int n = 0; n < 300; ++n) digest = ((digest * 31 + integers()) * 31 + sum()) * 31 + doubles();
    System.out.println(Long.toHexString(digest));
  }
}
